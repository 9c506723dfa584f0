#include "hotkeys/model/hotkey.h"

#include <gtest/gtest.h>

#include "hotkeys/model/modifier_combo.h"
#include "platform/embedded/embedded_terms.h"

namespace kivra {
namespace {

const embedded::EmbeddedTerms terms;
constexpr std::uint64_t controlOption = event_flags::control | event_flags::option;

std::optional<std::string> englishCharacter(std::uint16_t keyCode) {
  if (keyCode == 35) return "p";
  if (keyCode == 76) return "\r";
  if (keyCode == 117) return "\x7F";
  return std::nullopt;
}

TEST(Hotkey, MatchesOnFourModifiersOnly) {
  const Hotkey hotkey{35, controlOption};
  constexpr std::uint64_t capsLock = 0x10000;
  EXPECT_TRUE(hotkey.matches(35, controlOption));
  EXPECT_TRUE(hotkey.matches(35, controlOption | capsLock | event_flags::fn));
  EXPECT_FALSE(hotkey.matches(35, controlOption | event_flags::shift));
  EXPECT_FALSE(hotkey.matches(35, event_flags::control));
  EXPECT_FALSE(hotkey.matches(34, controlOption));
}

TEST(Hotkey, ShowsSymbolsInTheirOrderAndTheKeysName) {
  EXPECT_EQ(displayText({35, controlOption}, englishCharacter, terms), "⌃⌥P");
  EXPECT_EQ(displayText({113, event_flags::control}, englishCharacter, terms), "⌃Pause");
  EXPECT_EQ(displayText({49, event_flags::command | event_flags::shift}, englishCharacter, terms),
            "⇧⌘Space");
  EXPECT_EQ(displayText({111, event_flags::fn}, englishCharacter, terms), "F12");
  EXPECT_EQ(displayText({105, 0}, englishCharacter, terms), "#105");
  EXPECT_EQ(displayText({76, event_flags::command}, englishCharacter, terms), "⌘#76");
  EXPECT_EQ(displayText({117, event_flags::command}, englishCharacter, terms), "⌘#117");
}

TEST(Hotkey, DecodesOnlyItsStoredForm) {
  const Hotkey hotkey{35, 786432};
  EXPECT_EQ(Hotkey::decoded(hotkey.encoded()), hotkey);
  EXPECT_EQ(Hotkey::decoded(R"({"modifiers":786432,"extra":1,"keyCode":35})"), hotkey);
  for (const auto* bytes : {R"({"keyCode":70000,"modifiers":0})", R"({"keyCode":35})",
                            R"({"keyCode":"35","modifiers":0})", R"({"keyCode":35,"modifiers":-1})",
                            "[35,0]", "", "null"}) {
    EXPECT_EQ(Hotkey::decoded(bytes), std::nullopt) << bytes;
  }
}

TEST(ModifierCombo, IsHeldWithFurtherModifiers) {
  using enum ComboModifier;
  const ModifierCombo combo{control, fn};
  EXPECT_TRUE(combo.isHeld(event_flags::control | event_flags::fn));
  EXPECT_TRUE(combo.isHeld(event_flags::control | event_flags::fn | event_flags::shift));
  EXPECT_FALSE(combo.isHeld(event_flags::control));
  EXPECT_FALSE(ModifierCombo{fn}.isHeld(event_flags::fn));
  EXPECT_FALSE(ModifierCombo::off().isHeld(~std::uint64_t{0}));
}

TEST(ModifierCombo, ShowsItsMembersInTheFixedOrder) {
  using enum ComboModifier;
  EXPECT_EQ((ModifierCombo{option, command, control}).displayText(terms), "⌃⌥⌘");
  EXPECT_EQ(ModifierCombo{fn}.displayText(terms), "Выкл");
  std::string presets;
  for (const auto& preset : ModifierCombo::presets()) presets += preset.displayText(terms) + " ";
  EXPECT_EQ(presets, "⌃fn ⌥fn ⌘fn ⇧fn ⌃⇧ ⌥⇧ ⇧⌘ ⌃⌘ ");
}

TEST(ModifierCombo, DecodesAsASetOrNotAtAll) {
  using enum ComboModifier;
  const ModifierCombo combo{shift, fn};
  EXPECT_EQ(ModifierCombo::decoded(combo.encoded()), combo);
  EXPECT_EQ(ModifierCombo::decoded(R"({"modifiers":["fn","shift","fn"]})"), combo);
  EXPECT_EQ(ModifierCombo::decoded(R"({"modifiers":[]})"), ModifierCombo::off());
  for (const auto* bytes : {R"({"modifiers":["control","hyper"]})", R"({"modifiers":"fn"})",
                            R"({"modifiers":[1]})", "{}", "x"}) {
    EXPECT_EQ(ModifierCombo::decoded(bytes), std::nullopt) << bytes;
  }
}

}  // namespace
}  // namespace kivra
