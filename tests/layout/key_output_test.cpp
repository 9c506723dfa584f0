#include "layout/key_output.h"

#include <gtest/gtest.h>

#include <set>

#include "layout/fake_input_sources.h"

namespace kivra {
namespace {

/// Posting and a clock that write down, in one list, what the output does.
class OutputRecorder : public EventPosting, public Clock {
 public:
  std::unique_ptr<EventSource> eventSourceCreate(int /*stateId*/) override {
    ++sources;
    return refusesSources ? nullptr : std::make_unique<EventSource>();
  }
  std::optional<KeyboardEvent> createKeyboardEvent(EventSource& /*source*/, std::uint16_t keyCode,
                                                   bool down) override {
    if (refused.contains({keyCode, down})) return std::nullopt;
    return KeyboardEvent{.keyCode = keyCode, .down = down, .flags = asCreated, .unicodeString = {}};
  }
  void eventPost(const KeyboardEvent& event) override {
    EXPECT_EQ(event.userData, 19286);
    log += event.down ? "+" : "-";
    log += event.unicodeString.empty() ? std::to_string(event.keyCode) : event.unicodeString;
    if (event.flags != 0) log += "/" + std::to_string(event.flags);
    log += " ";
  }
  std::chrono::microseconds now() override { return {}; }
  void sleep(std::chrono::microseconds duration) override {
    log += "sleep:" + std::to_string(duration.count()) + " ";
  }

  std::string log;
  std::set<std::pair<std::uint16_t, bool>> refused;
  std::uint64_t asCreated = 0;
  bool refusesSources = false;
  int sources = 0;
};

class KeyOutputTest : public testing::Test {
 protected:
  std::string taken() { return std::exchange(recorder_.log, {}); }

  OutputRecorder recorder_;
  FakeInputSources inputSources_;
  KeyOutput output_{recorder_, inputSources_, recorder_};
};

TEST_F(KeyOutputTest, PostsEachKeyDownThenUpWithExactlyItsFlags) {
  recorder_.asCreated = event_flags::fn;
  output_.postKey(36, event_flags::command);
  EXPECT_EQ(taken(), "+36/1048576 -36/1048576 ");
  output_.postDeletes(2);
  EXPECT_EQ(taken(), "+51 -51 +51 -51 ");
  output_.postDeletes(0);
  output_.retype({});
  EXPECT_EQ(taken(), "");
  output_.retype({{5, true}, {4, false}, {5, true}});
  EXPECT_EQ(taken(), "+5/131072 -5/131072 +4 -4 +5/131072 -5/131072 ");
  EXPECT_EQ(recorder_.sources, 1) << "one source for all events";
}

TEST_F(KeyOutputTest, TypesOnePairForEachUserPerceivedCharacter) {
  output_.typeText("");
  EXPECT_EQ(taken(), "");
  output_.typeText("яe\u0301 👍🏽");
  EXPECT_EQ(taken(), "+я -я +e\u0301 -e\u0301 +  -  +👍🏽 -👍🏽 ");
  recorder_.asCreated = event_flags::fn;
  output_.typeText("x");
  EXPECT_EQ(taken(), "+x/8388608 -x/8388608 ") << "the flags stay as the event was created";
}

TEST_F(KeyOutputTest, LeavesOutThePairOfAnEventThatCannotBeMade) {
  recorder_.refused = {{1, true}, {2, false}};
  output_.retype({{0, false}, {1, false}, {2, false}, {3, false}});
  EXPECT_EQ(taken(), "+0 -0 +3 -3 ");
  recorder_.refused = {{0, false}};
  output_.typeText("ab");
  output_.postKey(49, 0);
  EXPECT_EQ(taken(), "+49 -49 ");
}

TEST_F(KeyOutputTest, AsksAgainForASourceThatItCouldNotHave) {
  recorder_.refusesSources = true;
  output_.postKey(1, 0);
  EXPECT_EQ(taken(), "");
  recorder_.refusesSources = false;
  output_.postKey(1, 0);
  EXPECT_EQ(taken(), "+1 -1 ");
}

TEST_F(KeyOutputTest, PausesAfterSelectingASource) {
  inputSources_.onSelect = [this](const std::string& id) { recorder_.log += "select:" + id + " "; };
  const Layout layout(FakeInputSources::source("ru-2", {"ru"}, {}), "ru", inputSources_);
  output_.postKey(51, 0);
  output_.selectLayout(layout);
  output_.postKey(5, 0);
  EXPECT_EQ(taken(), "+51 -51 select:ru-2 sleep:5000 +5 -5 ");
}

}  // namespace
}  // namespace kivra
