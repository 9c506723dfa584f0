// Orders as they come over the socket: in parts, of another build, cut short, or garbage.

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <span>
#include <string>
#include <vector>

#include "platform/guard/process/guard_channel.h"

namespace kivra::guard {
namespace {

std::array<int, 2> socketPair() {
  std::array<int, 2> ends{};
  ::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data());
  return ends;
}

struct Link {
  Link() = default;
  ~Link() {
    for (const auto end : ends) ::close(end);
  }

  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  void greet(std::uint32_t version = protocolVersion) {
    sendRecord(ends[0], FrameKind::hello, Hello{version});
  }
  void sendOrder(const Order& order, FrameKind kind = FrameKind::order) {
    sendRecord(ends[0], kind, order);
  }
  void sendBytes(const std::string& bytes) {
    ASSERT_EQ(::send(ends[0], bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
  }

  std::array<int, 2> ends = socketPair();
  GuardChannel channel{ends[1]};
};

class GuardFramesTest : public testing::Test, protected Link {};

TEST_F(GuardFramesTest, AProgramOfAnotherBuildIsNotReadOn) {
  greet(protocolVersion + 1);
  sendOrder({.kind = OrderKind::enable});
  EXPECT_FALSE(channel.receive());
  EXPECT_FALSE(channel.isOpen());
  EXPECT_TRUE(channel.isForeignBuild());
}

TEST_F(GuardFramesTest, OneThatDoesNotGreetIsNotReadEither) {
  sendOrder({.kind = OrderKind::enable});
  EXPECT_FALSE(channel.receive());
  EXPECT_TRUE(channel.isForeignBuild());
}

// Too short for a header, longer than it says, and longer than any frame.
TEST_F(GuardFramesTest, WhatIsNoFrameEndsTheLink) {
  const std::string all[] = {"x", std::string(8, '\0') + "x", std::string(60'000, 'x')};
  for (const auto& bytes : all) {
    Link link;
    link.greet();
    link.sendBytes(bytes);
    EXPECT_FALSE(link.channel.receive()) << bytes.size();
    EXPECT_FALSE(link.channel.isOpen()) << bytes.size();
    EXPECT_FALSE(link.channel.isForeignBuild()) << bytes.size();
  }
}

TEST_F(GuardFramesTest, FramesOfUnknownKindsAndTooShortOnesAreSkipped) {
  greet();
  sendOrder({.kind = OrderKind::disable}, FrameKind{77});
  sendRecord(ends[0], FrameKind::order, std::uint16_t{1});
  sendOrder({.kind = OrderKind::enable});
  const auto order = channel.receive();
  ASSERT_TRUE(order);
  EXPECT_EQ(order->order.kind, OrderKind::enable);
  EXPECT_TRUE(channel.isOpen());
}

TEST_F(GuardFramesTest, AnOrderThatComesBetweenThePartsOfAnotherIsNotMixedIntoIt) {
  greet();
  const PostedKey key{.keyCode = 1};
  const Order post{.kind = OrderKind::post, .more = 1, .number = 5};
  sendFrame(ends[0], FrameKind::postedKeys, std::as_bytes(std::span(&post, 1)),
            std::as_bytes(std::span(&key, 1)));
  sendOrder({.kind = OrderKind::verdict, .number = 6}, FrameKind::postedKeys);
  const auto order = channel.receive();
  ASSERT_TRUE(order);
  EXPECT_EQ(order->order.kind, OrderKind::verdict);
  EXPECT_TRUE(order->keys.empty());
}

TEST_F(GuardFramesTest, AnOrderWithoutEndIsAProgramGoneWrong) {
  greet();
  const std::vector<PostedKey> keys(maxRecords);
  const Order post{.kind = OrderKind::post, .more = 1};
  for (int i = 0; i < 1000 && channel.isOpen(); ++i) {
    sendFrame(ends[0], FrameKind::postedKeys, std::as_bytes(std::span(&post, 1)),
              std::as_bytes(std::span(keys)));
    EXPECT_FALSE(channel.receive());
  }
  EXPECT_FALSE(channel.isOpen());
}

TEST_F(GuardFramesTest, ReportsWaitInOrderForAProgramThatIsSlow) {
  for (std::uint32_t number = 1; number <= 2000; ++number) {
    ASSERT_TRUE(channel.send({.number = number}));
  }
  EXPECT_TRUE(channel.hasBacklog());
  std::uint32_t next = 1;
  while (const auto received = receiveFrame(ends[0]).frame) {
    EXPECT_EQ(received->head<Report>()->number, next++);
    channel.flush();
  }
  EXPECT_EQ(next, 2001U);
  EXPECT_FALSE(channel.hasBacklog());
}

TEST(GuardFrames, WhatAnEndSaidBeforeItWentIsReadThoughItHadNotReadAll) {
  const auto ends = socketPair();
  sendRecord(ends[0], FrameKind::hello, Hello{});
  sendRecord(ends[1], FrameKind::report, Report{.kind = ReportKind::unavailable});
  ::close(ends[1]);
  const auto received = receiveFrame(ends[0]);
  ASSERT_TRUE(received.frame);
  EXPECT_EQ(received.frame->head<Report>()->kind, ReportKind::unavailable);
  EXPECT_TRUE(receiveFrame(ends[0]).isClosed);
  ::close(ends[0]);
}

}  // namespace
}  // namespace kivra::guard
