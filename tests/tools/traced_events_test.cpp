#include "traced_events.h"

#include <gtest/gtest.h>

#include <regex>

#include "platform/embedded/embedded_desktop.h"

namespace kivra::events {
namespace {

constexpr std::uint64_t keysOnly = 1ULL << static_cast<std::uint32_t>(EventType::keyDown);

class TracedEventsTest : public testing::Test {
 protected:
  void tap(EventTapCallback callback) {
    port_ = taps_.eventTapCreate(keysOnly, std::move(callback));
    source_ = taps_.createRunLoopSource(*port_);
    taps_.runLoopAddSource(*source_);
    taps_.eventTapEnable(*port_, true);
    lines_.clear();
  }
  /// What was printed since, the times as "Nus".
  std::vector<std::string> lines() {
    auto printed = std::exchange(lines_, {});
    for (auto& line : printed) line = std::regex_replace(line, std::regex("[0-9]+us$"), "Nus");
    return printed;
  }
  std::string text() { return desktop_.application.front().field.text(); }

  embedded::EmbeddedDesktop desktop_{nullptr, nullptr};
  std::vector<std::string> lines_;
  Print print_ = [this](const std::string& line) { lines_.push_back(line); };
  TracedEventTaps taps_{desktop_.platform(), print_};
  TracedEventPosting posting_{desktop_.events, print_};
  std::shared_ptr<EventTapPort> port_;
  std::shared_ptr<RunLoopSource> source_;
};

TEST_F(TracedEventsTest, PrintsWhatTheTapGetsAndChangesNothing) {
  tap([](EventType, const Event& event) {
    return event.keyCode == key_codes::space ? EventVerdict::drop : EventVerdict::pass;
  });
  const auto layout = " layout=" + desktop_.inputSources.copyCurrentKeyboardInputSource()->id;
  taps_.setConsumableKeys({{.keyCode = key_codes::space, .flags = event_flags::shift}});
  EXPECT_TRUE(desktop_.events.send({.keyCode = key_codes::a}));
  EXPECT_FALSE(desktop_.events.send(
      {.keyCode = key_codes::space, .flags = event_flags::shift | event_flags::fn}));
  EXPECT_FALSE(desktop_.events.send({.keyCode = key_codes::space}));
  EXPECT_EQ(lines(),
            (std::vector<std::string>{
                "keyDown key=0 flags=-" + layout + " foreign passed verdict=pass Nus",
                "keyDown key=49 flags=shift+fn" + layout + " foreign held verdict=drop Nus",
                "keyDown key=49 flags=-" + layout + " foreign passed verdict=drop Nus"}));
  desktop_.events.disableTap(EventType::tapDisabledByTimeout);
  EXPECT_EQ(lines(), std::vector<std::string>{"tapDisabledByTimeout"});
  EXPECT_EQ(text(), "a");
}

TEST_F(TracedEventsTest, NamesNoKeysOfAPassword) {
  tap([](EventType, const Event&) { return EventVerdict::pass; });
  desktop_.application.front().secure = true;
  EXPECT_TRUE(desktop_.events.send({.keyCode = key_codes::x, .flags = event_flags::shift}));
  const auto layout = " layout=" + desktop_.inputSources.copyCurrentKeyboardInputSource()->id;
  EXPECT_EQ(lines(), std::vector<std::string>{"keyDown key=hidden" + layout +
                                              " foreign passed verdict=pass Nus"});
}

TEST_F(TracedEventsTest, PrintsOwnEventsAndTheLengthOfTheirTexts) {
  tap([](EventType, const Event&) { return EventVerdict::pass; });
  posting_.eventPost({.keyCode = 0, .userData = 7, .unicodeString = "ё"});
  const auto printed = lines();
  ASSERT_EQ(printed.size(), 2U);
  EXPECT_NE(printed[0].find(" own "), std::string::npos);
  EXPECT_EQ(printed[1], "  posted down key=0 flags=- text of 2 bytes");
  EXPECT_EQ(text(), "ё");
  int refusals = 0;
  posting_.onRefusal([&] { ++refusals; });
  desktop_.events.refusePosted();
  EXPECT_EQ(refusals, 1);
  EXPECT_EQ(lines().size(), 1U);
}

}  // namespace
}  // namespace kivra::events
