// The program's side, against a guard that the test plays itself.

#include "platform/guard/guard_event_taps.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/embedded/virtual_time.h"
#include "platform/guard/lent_guards.h"
#include "platform/guard/logged_lines.h"
#include "platform/guard/process/program_finder.h"

namespace kivra::guard {
namespace {

using namespace std::chrono_literals;

class GuardEventTapsTest : public testing::Test {
 protected:
  /// With a place guards are not started, but come there.
  explicit GuardEventTapsTest(const std::optional<std::filesystem::path>& place = {})
      : link(KIVRA_LENDING_GUARD,
             place ? std::make_unique<GuardDoor>(place, own(), log) : nullptr) {}

  static std::string own() { return std::filesystem::read_symlink("/proc/self/exe"); }

  /// Starts the tap and its guard.
  void start() {
    taps.setConsumableKeys({{.keyCode = key_codes::space}});
    port = taps.eventTapCreate(
        ~0ULL, [this](EventType type, const Event& event) { return callback(type, event); });
    taps.runLoopAddSource(*taps.createRunLoopSource(*port));
    taps.eventTapEnable(*port, true);
    guard = guards.next();
    ASSERT_TRUE(guard);
  }

  EventVerdict callback(EventType type, const Event& event) {
    events.push_back(event);
    events.back().type = type;
    groups.push_back(group.value_or(99));
    for (const auto& key : answer) posted.add(key);
    return verdict;
  }

  /// The guard says it, and the program reads.
  void report(const Report& report) {
    guard->channel.send(report);
    read();
  }
  void greet(std::uint32_t version = protocolVersion) {
    sendRecord(guard->channel.fd(), FrameKind::hello, Hello{version});
  }
  void greetAndBeReady() {
    greet();
    report({.kind = ReportKind::ready});
  }
  void read() {
    if (const auto watched = onReadable.lock()) (*watched)();
  }
  /// The guard ends, and so has the process that lent its end of the socket.
  void end() {
    guard.reset();
    pollfd waited{.fd = link.fd(), .events = POLLIN, .revents = 0};
    ::poll(&waited, 1, 20'000);
    read();
  }
  void skipOrders() {
    while (guard->channel.receive()) {
    }
  }

  LentGuards guards;
  embedded::Effects effects{nullptr};
  embedded::VirtualTime time{effects};
  LoggedLines log;
  PostedKeys posted;
  std::optional<std::uint32_t> group;
  GuardLink link;
  int refusals = 0;
  std::chrono::milliseconds pause{0};
  bool hasSelection = false;
  bool isOwnWindow = false;
  std::chrono::steady_clock::time_point caretMove{};
  std::weak_ptr<std::function<void()>> onReadable;
  GuardEventTaps taps{{.guard = link,
                       .posted = posted,
                       .runLoop = time,
                       .log = log,
                       .watchFd =
                           [this](int, std::function<void()> called) {
                             auto kept = std::make_shared<std::function<void()>>(std::move(called));
                             onReadable = kept;
                             return kept;
                           },
                       .groupMet = [this](auto met) { group = met; },
                       .groupSelected = [](std::uint32_t) {},
                       .hasSelectionBehind = [this](std::size_t) { return hasSelection; },
                       .lastCaretMove = [this] { return caretMove; },
                       .pauseAfterErasing = [this] { return pause; },
                       .postRefused = [this] { ++refusals; },
                       .isTakenByOwnWindow = [this](const Event&) { return isOwnWindow; }}};
  std::shared_ptr<EventTapPort> port;
  std::unique_ptr<LentGuards::Guard> guard;
  std::vector<Event> events;
  std::vector<std::uint32_t> groups;
  std::vector<PostedKey> answer;
  EventVerdict verdict = EventVerdict::pass;
  int starts = 0;
};

TEST_F(GuardEventTapsTest, TakesACaretThatMovesLongAfterAKeyForAClick) {
  using Clock = std::chrono::steady_clock;
  start();
  greetAndBeReady();
  const auto types = [&] {
    std::vector<EventType> met;
    for (const auto& event : std::exchange(events, {})) met.push_back(event.type);
    return met;
  };
  report({.number = 1, .kind = ReportKind::keyDown});
  caretMove = Clock::now() + 20ms;
  report({.number = 2, .kind = ReportKind::keyDown});
  EXPECT_EQ(types(), (std::vector{EventType::keyDown, EventType::keyDown})) << "typed";
  caretMove = Clock::now() + 1s;
  report({.number = 3, .kind = ReportKind::keyDown});
  EXPECT_EQ(types(), (std::vector{EventType::leftMouseDown, EventType::keyDown}));
  caretMove = {};
  report({.number = 4, .kind = ReportKind::keyDown});
  EXPECT_EQ(types(), (std::vector{EventType::keyDown}));
}

TEST_F(GuardEventTapsTest, TellsTheGuardWhatItNeedsAndAnswersIt) {
  start();
  const auto chords = guard->channel.receive();
  ASSERT_TRUE(chords);
  EXPECT_EQ(chords->chords, std::vector<Chord>{{.keyCode = key_codes::space}});
  EXPECT_EQ(guard->channel.receive()->order.kind, OrderKind::enable);
  greetAndBeReady();
  verdict = EventVerdict::drop;
  answer = {{.keyCode = 1}, {.kind = PostedKey::Kind::selectGroup, .value = 1}};
  report({.number = 7,
          .kind = ReportKind::keyDown,
          .awaitsVerdict = 1,
          .keyCode = key_codes::space,
          .group = 1});
  EXPECT_EQ(groups, std::vector{1U});
  EXPECT_FALSE(group);
  const auto decided = guard->channel.receive();
  ASSERT_TRUE(decided);
  EXPECT_EQ(decided->order.kind, OrderKind::verdict);
  EXPECT_EQ(decided->order.number, 7U);
  EXPECT_NE(decided->order.drop, 0);
  EXPECT_EQ(decided->keys, answer);
  report({.number = 8, .kind = ReportKind::keyDown});
  EXPECT_EQ(guard->channel.receive()->order.number, 8U) << "a post, up to that event";
  answer.clear();
  posted.add({.keyCode = 2});
  EXPECT_FALSE(guard->channel.receive()) << "all that is posted in one go stays together";
  posted.add({.keyCode = 3});
  time.serve();
  const auto post = guard->channel.receive();
  ASSERT_TRUE(post);
  EXPECT_EQ(post->order.number, 0U);
  EXPECT_EQ(post->keys.size(), 2U);
}

// As one of that event it would be refused when another key has gone on.
TEST_F(GuardEventTapsTest, WhatWasPostedBeforeAnEventThatTheTapIsNotAskedAboutFitsAnywhere) {
  start();
  skipOrders();
  greetAndBeReady();
  isOwnWindow = true;
  posted.add({.keyCode = 1});
  report({.number = 7, .kind = ReportKind::keyDown});
  EXPECT_TRUE(events.empty());
  EXPECT_EQ(guard->channel.receive()->order.number, 0U);
}

TEST_F(GuardEventTapsTest, GivesAnApplicationItsPauseAndACompletionItsDelete) {
  start();
  skipOrders();
  greetAndBeReady();
  const PostedKey erase{.keyCode = key_codes::deleteKey};
  auto lift = erase;
  lift.down = 0;
  answer = {erase, lift, {.keyCode = 1}};
  pause = 20ms;
  report({.number = 1, .kind = ReportKind::keyDown});
  const PostedKey wait{.kind = PostedKey::Kind::pause, .value = 20};
  EXPECT_EQ(guard->channel.receive()->keys,
            (std::vector<PostedKey>{erase, lift, wait, {.keyCode = 1}}));
  pause = 0ms;
  hasSelection = true;
  report({.number = 2, .kind = ReportKind::keyDown});
  EXPECT_EQ(guard->channel.receive()->keys,
            (std::vector<PostedKey>{erase, lift, erase, lift, {.keyCode = 1}}));
}

TEST_F(GuardEventTapsTest, WhatHasNotBeenTypedIsTakenBack) {
  start();
  greetAndBeReady();
  report({.number = 1, .kind = ReportKind::refused});
  EXPECT_EQ(refusals, 1);
  EXPECT_TRUE(events.empty());
  report({.kind = ReportKind::timedOut});
  EXPECT_EQ(refusals, 2);
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].type, EventType::tapDisabledByTimeout);
}

TEST_F(GuardEventTapsTest, AGuardOfAnotherBuildIsNotHeardAndNotReplaced) {
  start();
  greet(protocolVersion + 1);
  report({.number = 1, .kind = ReportKind::keyDown});
  EXPECT_TRUE(events.empty());
  time.runFor(60s);
  EXPECT_EQ(link.fd(), -1);
  EXPECT_EQ(log.lines, std::vector<std::string>{
                           "Kivra: сторож клавиатуры другой версии; перезапустите Kivra"});
}

TEST_F(GuardEventTapsTest, AGuardThatEndsIsReplacedAtOnceAndToldAll) {
  start();
  greetAndBeReady();
  report({.number = 1, .kind = ReportKind::keyDown});
  end();
  EXPECT_EQ(refusals, 1) << "what it has not typed nobody will";
  time.serve();
  guard = guards.next();
  ASSERT_TRUE(guard);
  greetAndBeReady();
  EXPECT_EQ(guard->channel.receive()->order.kind, OrderKind::setConsumable);
  EXPECT_EQ(guard->channel.receive()->order.kind, OrderKind::enable);
  report({.number = 1, .kind = ReportKind::keyDown});
  EXPECT_EQ(events.size(), 2U);
}

TEST_F(GuardEventTapsTest, GuardsThatEndBeforeAKeyIsTypedAreReplacedAFewTimesMore) {
  start();
  for (int i = 0; i < 3; ++i) {
    end();
    time.runFor(10s);
    guard = guards.next();
    ASSERT_TRUE(guard) << i;
  }
  // It has come through; later ones may fail as often again.
  greetAndBeReady();
  report({.number = 1, .kind = ReportKind::keyDown});
  starts = 0;
  while (guard && starts < 100) {
    end();
    time.runFor(10s);
    guard = link.fd() >= 0 ? guards.next() : nullptr;
    if (guard) ++starts;
  }
  EXPECT_EQ(starts, 7);
  EXPECT_EQ(log.lines.back(), "Kivra: сторож клавиатуры не запускается, перехвата нет");
  // The user's next try is a beginning.
  port.reset();
  start();
}

TEST_F(GuardEventTapsTest, WhereTheDisplayLacksSomethingNoOtherGuardIsTried) {
  start();
  greet();
  report({.kind = ReportKind::unavailable});
  end();
  time.runFor(60s);
  EXPECT_EQ(link.fd(), -1);
  EXPECT_EQ(log.lines.size(), 1U);
}

TEST_F(GuardEventTapsTest, NoGuardIsStartedForATapThatIsGone) {
  start();
  end();
  port.reset();
  time.runFor(60s);
  EXPECT_EQ(link.fd(), -1);
}

class AwaitedGuardTest : public GuardEventTapsTest {
 protected:
  AwaitedGuardTest() : GuardEventTapsTest(place()) {}
  ~AwaitedGuardTest() override { std::filesystem::remove_all(place().parent_path()); }

  static std::filesystem::path place() {
    return std::filesystem::temp_directory_path() /
           ("kivra-awaited-" + std::to_string(::getpid())) / "guards";
  }
  /// A guard comes, and the program notices.
  void come() {
    guard = std::make_unique<LentGuards::Guard>(ProgramFinder(place(), own()).find());
    read();
    greetAndBeReady();
  }
};

TEST_F(AwaitedGuardTest, IsToldAllWheneverOneComes) {
  taps.setConsumableKeys({{.keyCode = key_codes::space}});
  port = taps.eventTapCreate(
      ~0ULL, [this](EventType type, const Event& event) { return callback(type, event); });
  taps.runLoopAddSource(*taps.createRunLoopSource(*port));
  taps.eventTapEnable(*port, true);
  for (int i = 1; i <= 2; ++i) {
    come();
    EXPECT_EQ(guard->channel.receive()->order.kind, OrderKind::setConsumable);
    EXPECT_EQ(guard->channel.receive()->order.kind, OrderKind::enable);
    report({.number = 1, .kind = ReportKind::keyDown});
    EXPECT_EQ(events.size(), static_cast<std::size_t>(i));
    end();
    EXPECT_EQ(refusals, i) << "what it has not typed nobody will";
    EXPECT_EQ(link.fd(), -1);
  }
}

// More than a socket takes.
TEST_F(GuardEventTapsTest, AGuardThatDoesNotReadKeepsNobodyAndGetsAllInTheEnd) {
  start();
  skipOrders();
  constexpr std::uint32_t posts = 1000;
  for (std::uint32_t number = 0; number < posts; ++number) {
    for (int i = 0; i < 40; ++i) {
      posted.add({.kind = PostedKey::Kind::character, .value = number});
    }
    time.serve();
  }
  EXPECT_TRUE(link.hasBacklog());
  std::uint32_t next = 0;
  for (int rounds = 0; next < posts && rounds < 1000; ++rounds) {
    while (const auto post = guard->channel.receive()) {
      ASSERT_EQ(post->keys.size(), 40U);
      ASSERT_EQ(post->keys[0].value, next++);
    }
    time.runFor(5ms);
  }
  EXPECT_EQ(next, posts);
  EXPECT_FALSE(link.hasBacklog());
}

}  // namespace
}  // namespace kivra::guard
