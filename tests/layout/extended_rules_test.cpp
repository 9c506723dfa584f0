#include <string>

#include "layout/switcher_fixture.h"

namespace kivra {
namespace {

using Kind = UndoStack::ActionKind;

class ExtendedRules : public SwitcherFixture {
 protected:
  ExtendedRules() {
    desktop_.spellChecker.setDictionary("ru", {"привет", "мир"}, {{"превет", "привет"}});
    desktop_.spellChecker.setDictionary("en", {"hello", "people", "don't", "it"},
                                        {{"helo", "hello"}});
    services_.settings().extendedRules.set(true);
  }

  /// Types the keys but for the last, which must be a mark, and that one; what came of it.
  std::string endedByMark(std::string_view names) {
    press(names.substr(0, names.size() - 1));
    return mark(names.back()) ? taken() : "-";
  }

  bool mark(char name) {
    const auto key = name == '?' || name == '!';
    return switcher().keyTyped(name == '!' ? 18 : 44, key ? event_flags::shift : 0);
  }

  bool fits() { return services_.undoStack.last()->fits(); }
};

TEST_F(ExtendedRules, AMarkEndsAWord) {
  EXPECT_EQ(endedByMark("ghbdtn?"), "<<<<<<[ru]~ghbdtn?");
  EXPECT_EQ(token(), "ghbdtn");
  EXPECT_EQ(undone(), "<<<<<<<[us]~ghbdtn?");
  EXPECT_EQ(endedByMark("helo!"), "<<<<'h'e'l'l'o!");
  EXPECT_EQ(endedByMark("hello/"), "-");
  EXPECT_EQ(endedByMark("z/"), "-") << "an initial";
  EXPECT_EQ(mended("z"), "<[ru]~z_");
  select("us");
  EXPECT_EQ(mended("ghbdtn"), "<<<<<<[ru]~ghbdtn_");
}

TEST_F(ExtendedRules, AMarkIsAnyOtherKeyWhileTheyAreOff) {
  services_.settings().extendedRules.set(false);
  EXPECT_EQ(endedByMark("ghbdtn?"), "-");
  EXPECT_FALSE(switcher().wordBoundary(key_codes::space));
  EXPECT_EQ(taken(), "");
}

TEST_F(ExtendedRules, ManualSwitchTakesTheMarkAlong) {
  const auto switched = [this] {
    switcher().manualSwitch();
    return taken();
  };
  EXPECT_EQ(endedByMark("qqq?"), "-");
  EXPECT_EQ(switched(), "<<<<[ru]~qqq?");
  select("us");
  endedByMark("qqq?");
  switcher().wordBoundary(key_codes::space);
  EXPECT_EQ(switched(), "<<<<<[ru]~qqq?_");
  select("us");
  endedByMark("qqq?");
  switcher().wordBoundary(std::nullopt);
  switcher().wordBoundary(key_codes::space);
  EXPECT_EQ(switched(), "") << "clicked elsewhere";
}

TEST_F(ExtendedRules, MarksAroundAWordAreSetAside) {
  EXPECT_EQ(mended("helo,"), "<<<<<'h'e'l'l'o',_");
  EXPECT_EQ(token(), "helo,");
  EXPECT_EQ(undone(), "<<<<<<<helo,_");
  EXPECT_EQ(mended("helo'"), "-") << "letters left out on purpose";
  EXPECT_EQ(mended("HEllo."), "<<<<<<Hello._");
  EXPECT_EQ(mended("it."), "-") << "valid as it stands";
  select("ru");
  EXPECT_EQ(mended("people,"), "<<<<<<<[us]~people,_");
  select("ru");
  EXPECT_EQ(mended("[hello]"), "<<<<<<<[us]~[hello]_");
  select("ru");
  EXPECT_EQ(mended("don't"), "<<<<<[us]~don't_");
  for (const auto* names : {"d'on't", "o'", "hel,lo", ",,"}) {
    select("ru");
    EXPECT_EQ(mended(names), "-") << names;
  }
}

TEST_F(ExtendedRules, AShortNameWithinASentenceStays) {
  EXPECT_EQ(mended("Z"), "<[ru]~Z_") << "begins it";
  select("us");
  EXPECT_EQ(allMended({"it", "Z", "I", "Z"}), "----");
  select("ru");
  EXPECT_EQ(allMended({"vbh", "It"}), "--");
  EXPECT_EQ(mended("it"), "<<[us]~it_") << "no name";
  const auto afterwards = [&](auto&& happening) {
    select("us");
    EXPECT_EQ(mended("it"), "-");
    happening();
    return mended("Z");
  };
  EXPECT_EQ(afterwards([&] { mended("hello."); }), "<[ru]~Z_");
  EXPECT_EQ(afterwards([&] { word("hello", key_codes::returnKey); }), "<[ru]~Z_");
  EXPECT_EQ(afterwards([&] { endedByMark("hello!"); }), "<[ru]~Z_");
  EXPECT_EQ(afterwards([&] { switcher().wordBoundary(std::nullopt); }), "<[ru]~Z_");
  EXPECT_EQ(afterwards([&] { mended("qqq"); }), "<[ru]~Z_") << "no word of the layout";
  services_.settings().extendedRules.set(false);
  EXPECT_EQ(afterwards([] {}), "<[ru]~Z_");
}

TEST_F(ExtendedRules, ALearnedWordStaysWithAMarkAsWell) {
  services_.exceptions().add("helo");
  EXPECT_EQ(mended("helo,"), "-");
}

TEST_F(ExtendedRules, TwoCapitalsInTheWrongLayoutAreOneChange) {
  EXPECT_EQ(mended("GHbdtn"), "<<<<<<[ru]~Ghbdtn_");
  EXPECT_EQ(kind(), Kind::layoutSwitch);
  EXPECT_EQ(token(), "GHbdtn");
  EXPECT_EQ(undone(), "<<<<<<<[us]~GHbdtn_");
  select("ru");
  EXPECT_EQ(mended("GHbdtn"), "<<<<<<Ghbdtn_") << "in its own layout";
  services_.settings().autoFixDoubleCapitals.set(false);
  select("us");
  EXPECT_EQ(mended("GHbdtn"), "<<<<<<[ru]~GHbdtn_");
}

TEST_F(ExtendedRules, AnUndoGoesBackOverWhatWasTypedSince) {
  word("ghbdtn");
  taken();
  word("vbh");
  press("ljv");
  eraseOne();
  ASSERT_TRUE(fits());
  EXPECT_EQ(undone(), "<<<<<<<<<<<<<[us]~ghbdtn_'м'и'р' 'д'о");
  services_.settings().extendedRules.set(false);
  EXPECT_EQ(undone(), "<<<<<<<[us]~ghbdtn_") << "as without them";
}

TEST_F(ExtendedRules, AnUndoDoesNotFitWhereTheCursorHasLeft) {
  const auto fitsAfter = [this](auto&& happening) {
    select("us");
    word("ghbdtn");
    taken();
    EXPECT_TRUE(fits());
    happening();
    return fits();
  };
  EXPECT_TRUE(fitsAfter([&] { word("vbh"); }));
  EXPECT_FALSE(fitsAfter([&] { switcher().wordBoundary(std::nullopt); })) << "a click, an arrow";
  EXPECT_FALSE(fitsAfter([&] { switcher().keyTyped(115, 0); })) << "Home";
  EXPECT_FALSE(fitsAfter([&] { word("vbh", key_codes::returnKey); }));
  EXPECT_FALSE(fitsAfter([&] { desktop_.application.focus({}); }));
  EXPECT_FALSE(fitsAfter([&] { eraseOne(); })) << "into the change itself";
  EXPECT_FALSE(fitsAfter([&] {
    word("vbh");
    switcher().manualSwitch();
  }));
  services_.settings().extendedRules.set(false);
  EXPECT_TRUE(fitsAfter([&] { switcher().wordBoundary(std::nullopt); }));
}

}  // namespace
}  // namespace kivra
