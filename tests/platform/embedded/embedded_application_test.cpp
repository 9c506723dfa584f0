#include "platform/embedded/embedded_application.h"

#include <gtest/gtest.h>

#include "platform/embedded/embedded_desktop.h"

namespace kivra::embedded {
namespace {

using namespace event_flags;

class EmbeddedApplicationTest : public testing::Test {
 protected:
  void keys(std::initializer_list<std::uint16_t> codes, std::uint64_t flags = 0) {
    for (const auto code : codes) desktop_.application.keyDown(code, flags, "");
  }
  void focus(const std::string& text, bool secure = false) {
    FrontApplication front;
    front.secure = secure;
    front.field = TextField(text);
    desktop_.application.focus(front);
  }
  void useLayout(const std::string& name) {
    desktop_.inputSources.setSources({EmbeddedInputSources::keyboardSource(name, {"en"}, name)});
  }
  std::string text() { return desktop_.application.front().field.text(); }

  EmbeddedDesktop desktop_{nullptr, nullptr};
};

TEST_F(EmbeddedApplicationTest, InsertsWhatTheSelectedSourceGives) {
  keys({0, 36, 48, 76, 49, 82});
  keys({0, 49}, shift);
  desktop_.inputSources.select("ru");
  keys({0});
  desktop_.application.keyDown(0, command, "👍🏽");
  EXPECT_EQ(text(), "a\n\t\n 0A ф👍🏽");
  keys({51});
  EXPECT_EQ(text(), "a\n\t\n 0A ф");
}

TEST_F(EmbeddedApplicationTest, InsertsNothingForShortcutsAndKeysWithoutACharacter) {
  keys({0, 36, 48, 51, 123}, control);
  keys({0, 36, 48, 51, 123}, option);
  keys({0, 36, 49, 51}, command | shift);
  keys({1, 36, 49, 51}, command);
  keys({53, 113, 122, 114, 56, 999});
  EXPECT_EQ(text(), "");
}

TEST_F(EmbeddedApplicationTest, EditsWithCommandKeys) {
  focus("one two");
  keys({0}, command);
  keys({8}, command);
  keys({125});
  keys({9, 9}, command);
  EXPECT_EQ(text(), "one twoone twoone two");
  keys({6}, command);
  EXPECT_EQ(text(), "one twoone two");
  keys({6}, command);
  EXPECT_EQ(text(), "one twoone two") << "only the last paste";
  keys({126});
  keys({124, 124, 124}, shift);
  keys({7}, command);
  EXPECT_EQ(text(), " twoone two");
  EXPECT_EQ(desktop_.pasteboard.stringForType(pasteboardTypeString), "one");
}

TEST_F(EmbeddedApplicationTest, CopiesNothingFromASecureField) {
  focus("secret", true);
  keys({0, 8, 7}, command);
  EXPECT_EQ(text(), "secret");
  EXPECT_TRUE(desktop_.pasteboard.items().empty());
}

TEST_F(EmbeddedApplicationTest, CombinesADeadKeyWithTheNextKeyOnly) {
  useLayout("us(intl)");
  keys({39, 14});
  EXPECT_EQ(text(), "é");
  keys({39, 12});
  EXPECT_EQ(text(), "é'q") << "what does not combine comes on its own";
  keys({39, 51});
  EXPECT_EQ(text(), "é'") << "an editing key drops the dead key";
  keys({39});
  focus("");
  keys({14});
  EXPECT_EQ(text(), "e") << "so does another field";
  keys({39, 53, 14});
  EXPECT_EQ(text(), "ee") << "so does Escape";
  keys({39});
  keys({8}, command);
  keys({14});
  EXPECT_EQ(text(), "eee") << "so does a shortcut";
  keys({39});
  keys({8}, control);
  keys({14, 39});
  desktop_.events.send({.type = EventType::leftMouseDown});
  keys({14});
  EXPECT_EQ(text(), "eeeee") << "and another, and a click";
}

}  // namespace
}  // namespace kivra::embedded
