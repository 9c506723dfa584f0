#include "layout/layout_switcher.h"

#include <memory>

#include "layout/switcher_fixture.h"

namespace kivra {
namespace {

using Kind = UndoStack::ActionKind;

class LayoutSwitcherTest : public SwitcherFixture {};

TEST_F(LayoutSwitcherTest, RetypesAWordInTheOtherLayoutAndBack) {
  EXPECT_EQ(mended("Ghbdtn"), "<<<<<<[ru]~Ghbdtn_");
  EXPECT_EQ(kind(), Kind::layoutSwitch);
  EXPECT_EQ(token(), "Ghbdtn");
  EXPECT_EQ(undone(), "<<<<<<<[us]~Ghbdtn_");
  EXPECT_TRUE(word("vbh", key_codes::returnKey));
  EXPECT_EQ(taken(), "<<<[ru]~vbh^");
  EXPECT_EQ(mended("hello"), "<<<<<[us]~hello_") << "Russian is selected now";
  EXPECT_EQ(token(), "руддщ");
}

TEST_F(LayoutSwitcherTest, SwitchesOnlyFromAnInvalidToAValidReading) {
  EXPECT_EQ(mended("ghj"), "-") << "both readings are words";
  EXPECT_EQ(mended("qqq"), "-") << "neither is";
  EXPECT_EQ(mended("hello"), "-");
  EXPECT_EQ(mended("vbhh"), "-");
  desktop_.spellChecker.setDictionary("ru", {"мир1", "бок"}, {});
  EXPECT_EQ(mended("vbh1"), "-") << "a digit in the other reading";
  EXPECT_EQ(mended(",jr"), "<<<[ru]~,jr_") << "punctuation in the typed reading does not matter";
}

TEST_F(LayoutSwitcherTest, KnowsTheWordsOfOneLetter) {
  const auto from = [this](const char* source, const char* name) {
    select(source);
    return mended(name);
  };
  for (const auto* name : {"f", "d", "b", "r", "j", "c", "e", "z", "Z"}) {
    EXPECT_EQ(from("us", name), std::string("<[ru]~") + name + "_");
    EXPECT_EQ(token(), name);
  }
  EXPECT_EQ(undone(), "<<[us]~Z_");
  for (const auto* name : {"a", "i", "I", "q", "w", ",", "1"}) EXPECT_EQ(from("us", name), "-");
  for (const auto* name : {"a", "I"}) {
    EXPECT_EQ(from("ru", name), std::string("<[us]~") + name + "_");
  }
  for (const auto* name : {"f", "z", "q", "o", ";"}) EXPECT_EQ(from("ru", name), "-");
  services_.exceptions().add("z");
  EXPECT_EQ(from("us", "Z"), "-") << "a learned word";
}

TEST_F(LayoutSwitcherTest, DecidesInTheFixedOrder) {
  replaceWith({{"ghbdtn", "hi"}, {"passw0rd", "x"}});
  EXPECT_EQ(mended("Passw0rd"), "-") << "secrets go before the dictionary of replacements";
  services_.settings().autoSwitchEnabled.set(false);
  EXPECT_EQ(mended("ghbdtn"), "<<<<<<'h'i_") << "which goes before the switch, and without it";
  EXPECT_EQ(allMended({"vbh", "z"}), "--");
  services_.settings().autoSwitchEnabled.set(true);
  EXPECT_EQ(mended("VBh"), "<<<[ru]~VBh_") << "the switch goes before the fix of two capitals";
  select("us");
  services_.exceptions().add("vbh");
  EXPECT_EQ(mended("VBh"), "-") << "a learned word is neither switched nor fixed";
}

TEST_F(LayoutSwitcherTest, LeavesSecureFieldsAndSkippedApplicationsAlone) {
  replaceWith({{"ghbdtn", "hi"}});
  auto& front = desktop_.application.front();
  front.secure = true;
  EXPECT_EQ(mended("ghbdtn"), "-");
  front.secure = false;
  front.identifier = "COM.apple.terminal";
  EXPECT_EQ(mended("ghbdtn"), "-");
  front.identifier.reset();
  EXPECT_EQ(mended("ghbdtn"), "<<<<<<'h'i_");
}

TEST_F(LayoutSwitcherTest, MatchesTheSkipList) {
  services_.settings().skipBundleIDs.set({"", "Com.Jetbrains.", "com.apple.Terminal", "."});
  const auto isSkipped = [this](std::optional<std::string> identifier) {
    desktop_.application.front().identifier = std::move(identifier);
    return switcher().isSkippedApp();
  };
  for (const auto* skipped : {"com.jetbrains.rider", "COM.JETBRAINS", "com.jetbrains.",
                              "com.Apple.terminal", "", ".hidden"}) {
    EXPECT_TRUE(isSkipped(skipped)) << skipped;
  }
  for (const auto* other :
       {"com.jetbrainsx", "com.apple.Terminal2", "com.apple", "xcom.jetbrains."})
    EXPECT_FALSE(isSkipped(other)) << other;
  EXPECT_FALSE(isSkipped(std::nullopt));
}

TEST_F(LayoutSwitcherTest, NeedsBothLayoutsAndOneOfTheTwoLanguages) {
  using embedded::EmbeddedInputSources;
  desktop_.inputSources.setSources({EmbeddedInputSources::keyboardSource("de", {"de"}, "de"),
                                    EmbeddedInputSources::keyboardSource("ru", {"ru"}, "ru")});
  EXPECT_EQ(mended("ghbdtn"), "-") << "German is selected";
  switcher().manualSwitch();
  EXPECT_EQ(taken(), "<<<<<<<[ru]~ghbdtn_") << "by hand any other language gives Russian";
  desktop_.inputSources.setSources({});
  EXPECT_EQ(mended("ghbdtn"), "-");
  switcher().manualSwitch();
  EXPECT_EQ(taken(), "");
  Services halfEnabled(desktop_.platform());
  press(halfEnabled.layoutSwitcher(), "ghbdtn");
  EXPECT_FALSE(halfEnabled.layoutSwitcher().wordBoundary(key_codes::space));
  halfEnabled.layoutSwitcher().manualSwitch();
  EXPECT_EQ(taken(), "");
}

TEST_F(LayoutSwitcherTest, ForgetsKeysThatWereErasedAndWordsThatWereBrokenOff) {
  press("ghbdtnn");
  eraseOne();
  EXPECT_EQ(mended(""), "<<<<<<[ru]~ghbdtn_");
  select("us");
  eraseOne();
  press("ghb");
  switcher().wordBoundary(std::nullopt);
  EXPECT_EQ(mended("dtn"), "-");
  press("ghb-");
  EXPECT_EQ(mended("vbh"), "<<<[ru]~vbh_") << "a key that belongs to no word starts a new one";
}

TEST_F(LayoutSwitcherTest, RemembersAsManyWordsAsTheLongestPattern) {
  replaceWith({{"aa bb cc", "X"}});
  EXPECT_EQ(allMended({"dd", "aa", "bb"}), "---");
  EXPECT_EQ(mended("cc"), "<<<<<<<<'X_");
  EXPECT_EQ(allMended({"bb", "cc"}), "--") << "a replacement empties the history";
  replaceWith({{"dd", "Y"}});
  EXPECT_EQ(allMended({"aa", "bb"}), "--");
  replaceWith({{"aa bb cc", "X"}});
  EXPECT_EQ(mended("cc"), "-") << "only one word was kept";
}

TEST_F(LayoutSwitcherTest, EmptiesTheHistoryAtABreak) {
  replaceWith({{"aa bb", "X"}});
  const auto afterABreak = [this](const std::function<void()>& interrupt) {
    word("aa");
    interrupt();
    taken();
    return mended("bb");
  };
  EXPECT_EQ(afterABreak([] {}), "<<<<<'X_");
  EXPECT_EQ(afterABreak([this] { switcher().wordBoundary(std::nullopt); }), "-");
  EXPECT_EQ(afterABreak([this] { word(""); }), "-") << "a second Space";
  EXPECT_EQ(afterABreak([this] { word("Passw0rd"); }), "-");
  EXPECT_EQ(afterABreak([this] {
              press("q");
              switcher().manualSwitch();
              word("");
              select("us");
            }),
            "-")
      << "a word switched by hand";
}

TEST_F(LayoutSwitcherTest, SwitchesTheWordInProgressByHand) {
  press("vb");
  switcher().manualSwitch();
  EXPECT_EQ(taken(), "<<[ru]~vb");
  switcher().manualSwitch();
  EXPECT_EQ(taken(), "<<[us]~vb");
  EXPECT_EQ(mended("h"), "-") << "what was switched by hand is not mended at its end";
  EXPECT_FALSE(hasUndo());
  EXPECT_EQ(mended("vbh"), "<<<[ru]~vbh_") << "the next word is";
  press("q");
  switcher().manualSwitch();
  press("-");
  select("us");
  taken();
  EXPECT_EQ(mended("vbh"), "<<<[ru]~vbh_") << "so is one after a key that belongs to no word";
}

TEST_F(LayoutSwitcherTest, SwitchesTheLastWordByHand) {
  switcher().manualSwitch();
  EXPECT_EQ(taken(), "") << "no word yet";
  word("qwE", key_codes::tab);
  switcher().manualSwitch();
  EXPECT_EQ(taken(), "<<<<[ru]~qwE|");
  switcher().wordBoundary(std::nullopt);
  switcher().manualSwitch();
  EXPECT_EQ(taken(), "<<<<[us]~qwE|") << "a break leaves the last word";
  EXPECT_EQ(mended("ghbdtn"), "<<<<<<[ru]~ghbdtn_");
  switcher().manualSwitch();
  EXPECT_EQ(taken(), "<<<<<<<[us]~ghbdtn_") << "and takes an automatic switch back";
  EXPECT_TRUE(hasUndo()) << "which can still be undone";
  word("");
  switcher().manualSwitch();
  EXPECT_EQ(taken(), "") << "the second Space ended an empty word";
}

TEST_F(LayoutSwitcherTest, UndoesNothingOnceItIsGone) {
  auto passing = std::make_unique<LayoutSwitcher>(LayoutSwitcher::Environment{
      services_.keycodeMap(), services_.wordValidator(), services_.settings(),
      services_.replacements(), services_.exceptions(), services_.undoStack, services_.keyOutput(),
      desktop_.session});
  press(*passing, "vbh");
  ASSERT_TRUE(passing->wordBoundary(key_codes::space));
  EXPECT_EQ(taken(), "<<<[ru]~vbh_");
  passing.reset();
  EXPECT_EQ(undone(), "");
}

}  // namespace
}  // namespace kivra
