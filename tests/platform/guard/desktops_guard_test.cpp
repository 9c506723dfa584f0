// A guard that the desktop has started and a program find each other, and nobody else.

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "platform/guard/guard_door.h"
#include "platform/guard/logged_lines.h"
#include "platform/guard/piped_display.h"

namespace kivra::guard {
namespace {

using Presses = std::vector<std::uint16_t>;

const std::string own = std::filesystem::read_symlink("/proc/self/exe");

std::filesystem::path newFolder() {
  std::string pattern = std::filesystem::temp_directory_path() / "kivra-guards-XXXXXX";
  return ::mkdtemp(pattern.data());
}

class DesktopsGuard : public testing::Test {
 protected:
  ~DesktopsGuard() override { std::filesystem::remove_all(folder); }

  /// A program listens; answers what has come to it, with patience.
  int admit(GuardDoor& door) {
    EXPECT_TRUE(door.open());
    pollfd waited{.fd = door.fd(), .events = POLLIN, .revents = 0};
    return ::poll(&waited, 1, 20'000) == 1 ? door.admit() : -1;
  }
  void meet(GuardDoor& door) {
    const int fd = admit(door);
    ASSERT_GE(fd, 0);
    pipes.meet(fd);
    sendRecord(fd, FrameKind::hello, Hello{});
    ASSERT_TRUE(pipes.await(ReportKind::ready));
  }
  /// Space is asked about, and goes on when the program is gone.
  void expectServed() {
    ASSERT_TRUE(pipes.listenForSpace());
    pipes.tap(KEY_SPACE);
    EXPECT_TRUE(pipes.await(ReportKind::keyDown));
    pipes.hangUp();
    EXPECT_EQ(pipes.presses(1), Presses{KEY_SPACE});
  }

  std::filesystem::path folder = newFolder();
  std::filesystem::path place = folder / "guards";
  LoggedLines log;
  GuardedPipes pipes{GuardedProgram{.place = place, .executable = own}};
};

TEST_F(DesktopsGuard, PassesKeysAndServesOneProgramAfterTheOther) {
  pipes.tap(KEY_A);
  EXPECT_EQ(pipes.presses(1), Presses{KEY_A}) << "while there is none";
  {
    GuardDoor door(place, own, log);
    meet(door);
    expectServed();
    meet(door);
    expectServed();
  }
  pipes.tap(KEY_B);
  EXPECT_EQ(pipes.presses(1), Presses{KEY_B}) << "between two";
  GuardDoor door(place, own, log);
  meet(door);
  expectServed();
  EXPECT_TRUE(log.lines.empty());
}

TEST_F(DesktopsGuard, OfAnotherExecutableIsSentAwayWithALine) {
  GuardDoor door(place, "/usr/libexec/kivra/kivra-keyboard-guard", log);
  EXPECT_EQ(admit(door), -1);
  ASSERT_EQ(log.lines.size(), 1U);
  EXPECT_NE(log.lines[0].find(own), std::string::npos) << log.lines[0];
  pipes.tap(KEY_A);
  EXPECT_EQ(pipes.presses(1), Presses{KEY_A});
}

TEST_F(DesktopsGuard, TellsAnotherExecutableNothing) {
  const GuardedPipes wary(GuardedProgram{.place = place, .executable = "/usr/bin/kivra"});
  GuardDoor door(place, own, log);
  bool isServed = false;
  bool isLeft = false;
  // Both guards come, in any order.
  for (int i = 0; i < 2; ++i) {
    const int fd = admit(door);
    ASSERT_GE(fd, 0);
    pollfd waited{.fd = fd, .events = POLLIN, .revents = 0};
    ASSERT_EQ(::poll(&waited, 1, 20'000), 1);
    (receiveFrame(fd).isClosed ? isLeft : isServed) = true;
    ::close(fd);
  }
  EXPECT_TRUE(isServed && isLeft);
}

TEST_F(DesktopsGuard, EndsWhenTheDesktopEndsIt) {
  pipes.tap(KEY_A);
  ASSERT_EQ(pipes.presses(1), Presses{KEY_A});
  ::kill(pipes.watcher(), SIGTERM);
  EXPECT_TRUE(pipes.haveEnded());
}

TEST_F(DesktopsGuard, IsNotAwaitedWhereOthersMayLookOrNowhere) {
  ::chmod(folder.c_str(), 0755);
  EXPECT_FALSE(GuardDoor(place, own, log).open());
  EXPECT_FALSE(GuardDoor(std::nullopt, own, log).open());
}

}  // namespace
}  // namespace kivra::guard
