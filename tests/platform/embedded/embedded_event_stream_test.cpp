#include <gtest/gtest.h>

#include "platform/embedded/embedded_desktop.h"

namespace kivra::embedded {
namespace {

constexpr std::uint64_t keysOnly = 1ULL << 10;

/// Keys of the English layout: a, s, d.
class EmbeddedEventStreamTest : public testing::Test {
 protected:
  void tap(std::uint64_t mask, EventTapCallback callback) {
    port_ = desktop_.events.eventTapCreate(mask, std::move(callback));
    source_ = desktop_.events.createRunLoopSource(*port_);
    desktop_.events.runLoopAddSource(*source_);
    desktop_.events.eventTapEnable(*port_, true);
  }
  void post(std::uint16_t code) {
    desktop_.events.eventPost({.keyCode = code, .down = true, .userData = 7, .unicodeString = {}});
    desktop_.events.eventPost({.keyCode = code, .down = false, .userData = 7, .unicodeString = {}});
  }
  std::string text() { return desktop_.application.front().field.text(); }

  EmbeddedDesktop desktop_{nullptr, nullptr};
  std::shared_ptr<EventTapPort> port_;
  std::shared_ptr<RunLoopSource> source_;
};

TEST_F(EmbeddedEventStreamTest, AsksTheTapAboutPostedEventsToo) {
  std::vector<std::uint16_t> seen;
  tap(keysOnly, [&](EventType, const Event& event) {
    seen.push_back(event.keyCode);
    if (event.userData == 0) {
      post(1);
      post(2);
    }
    return event.keyCode == 2 ? EventVerdict::drop : EventVerdict::pass;
  });
  EXPECT_TRUE(desktop_.events.send({.keyCode = 0}));
  EXPECT_EQ(text(), "as");
  EXPECT_FALSE(desktop_.events.send({.keyCode = 2}));
  EXPECT_EQ(text(), "ass");
  post(0);
  EXPECT_EQ(text(), "assa") << "outside the tap at once";
  EXPECT_EQ(seen, (std::vector<std::uint16_t>{0, 1, 2, 2, 1, 2, 0}));
}

TEST_F(EmbeddedEventStreamTest, AsksNoTapWhoseSourceIsNotInTheRunLoop) {
  tap(keysOnly, [](EventType, const Event&) { return EventVerdict::drop; });
  desktop_.events.runLoopRemoveSource(*source_);
  EXPECT_TRUE(desktop_.events.send({.keyCode = 0}));
  desktop_.events.runLoopAddSource(*source_);
  EXPECT_FALSE(desktop_.events.send({.keyCode = 0}));
  EXPECT_EQ(text(), "a");
}

TEST_F(EmbeddedEventStreamTest, HasNoTapWithoutBothPermissions) {
  desktop_.session.setInputMonitoringGranted(false);
  EXPECT_EQ(desktop_.events.eventTapCreate(keysOnly, nullptr), nullptr);
}

}  // namespace
}  // namespace kivra::embedded
