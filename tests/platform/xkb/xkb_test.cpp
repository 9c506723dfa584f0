#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <map>

#include "platform/events.h"
#include "platform/xkb/virtual_keys.h"
#include "platform/xkb/xkb_compose.h"
#include "platform/xkb/xkb_layout.h"

namespace kivra {
namespace {

TEST(VirtualKeys, StandForOnePhysicalKeyEach) {
  std::map<std::uint16_t, std::uint16_t> codes;
  for (std::uint16_t code = 0; code < 0x300; ++code) {
    if (const auto evdev = evdevCode(code)) {
      EXPECT_EQ(virtualKey(*evdev), code);
      EXPECT_TRUE(codes.emplace(*evdev, code).second) << *evdev << " is two keys";
    }
    if (const auto key = virtualKey(code)) {
      EXPECT_EQ(evdevCode(*key), code);
    }
  }
  EXPECT_GT(codes.size(), 100U);
  EXPECT_EQ(evdevCode(65535), std::nullopt);
  EXPECT_EQ(virtualKey(KEY_RESERVED), std::nullopt);
}

TEST(VirtualKeys, AreTheKeysThatTheProgramNames) {
  const std::pair<std::uint16_t, int> keys[] = {
      {key_codes::a, KEY_A},
      {key_codes::z, KEY_Z},
      {key_codes::x, KEY_X},
      {key_codes::c, KEY_C},
      {key_codes::v, KEY_V},
      {key_codes::returnKey, KEY_ENTER},
      {key_codes::tab, KEY_TAB},
      {key_codes::space, KEY_SPACE},
      {key_codes::deleteKey, KEY_BACKSPACE},
      {key_codes::escape, KEY_ESC},
      {key_codes::leftShift, KEY_LEFTSHIFT},
      {key_codes::rightShift, KEY_RIGHTSHIFT},
      {key_codes::keypadEnter, KEY_KPENTER},
      {key_codes::pause, KEY_PAUSE},
      {key_codes::leftArrow, KEY_LEFT},
      {key_codes::rightArrow, KEY_RIGHT},
      {key_codes::downArrow, KEY_DOWN},
      {key_codes::upArrow, KEY_UP},
      {63, KEY_FN},
      {117, KEY_DELETE},
      {10, KEY_102ND},
  };
  for (const auto& [code, evdev] : keys) EXPECT_EQ(evdevCode(code), evdev) << code;
  constexpr int functionKeys[] = {122, 120, 99, 118, 96, 97, 98, 100, 101, 109};
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(virtualKey(static_cast<std::uint16_t>(KEY_F1 + i)), functionKeys[i]) << i;
}

/// What the keys of the letter rows, named by their English letters, give in a layout.
std::string rows(const std::string& name, bool shift) {
  const auto layout = XkbLayout::named(name);
  const std::uint16_t keys[] = {12, 13, 14, 15, 17, 16, 32, 34, 31, 35, 33, 30, 0,  1,  2,  3,
                                5,  4,  38, 40, 37, 41, 39, 6,  7,  8,  9,  11, 45, 46, 43, 47};
  std::string given;
  for (const auto key : keys) given += layout->character(key, shift).value_or("");
  return given;
}

TEST(XkbLayout, GivesTheLettersOfKnownLayouts) {
  EXPECT_EQ(rows("us", false), "qwertyuiop[]asdfghjkl;'zxcvbnm,.");
  EXPECT_EQ(rows("us", true), "QWERTYUIOP{}ASDFGHJKL:\"ZXCVBNM<>");
  EXPECT_EQ(rows("ru", false), "йцукенгшщзхъфывапролджэячсмитьбю");
  EXPECT_EQ(rows("ru", true), "ЙЦУКЕНГШЩЗХЪФЫВАПРОЛДЖЭЯЧСМИТЬБЮ");
  EXPECT_TRUE(rows("ru(phonetic)", false).starts_with("яверт"));
  EXPECT_TRUE(rows("us(dvorak)", false).starts_with("',.pyfgcrl"));
}

TEST(XkbLayout, GivesDigitsOnTheKeypadAndNothingOnKeysWithoutCharacters) {
  const auto layout = XkbLayout::named("us");
  const std::uint16_t keypad[] = {82, 83, 84, 85, 86, 87, 88, 89, 91, 92};
  for (int digit = 0; digit < 10; ++digit) {
    EXPECT_EQ(layout->character(keypad[digit], false), std::to_string(digit));
  }
  for (const auto code : std::initializer_list<std::uint16_t>{122, 123, 56, 999}) {
    EXPECT_EQ(layout->character(code, false), std::nullopt) << code;
  }
  EXPECT_EQ(layout->symbol(999, false), 0U);
}

TEST(XkbLayout, IsNullForNamesThatStandForNone) {
  for (const auto* name : {"", "nowhere", "us(nowhere)", "us(", "us(dvorak", "(dvorak)"}) {
    EXPECT_EQ(XkbLayout::named(name), nullptr) << name;
  }
}

TEST(XkbCompose, CombinesDeadKeysWithWhatFollows) {
  const auto layout = XkbLayout::named("us(intl)");
  XkbCompose compose;
  const auto acute = layout->symbol(39, false);
  EXPECT_EQ(acute, std::uint32_t{XKB_KEY_dead_acute});
  EXPECT_EQ(layout->character(39, false), std::nullopt);
  EXPECT_TRUE(compose.isDead(acute));
  EXPECT_FALSE(compose.isDead(XKB_KEY_e));
  EXPECT_EQ(compose.combined(acute, XKB_KEY_e), "é");
  EXPECT_EQ(compose.combined(acute, XKB_KEY_space), "'");
  EXPECT_EQ(compose.combined(acute, XKB_KEY_q), std::nullopt);
  EXPECT_EQ(compose.combined(XKB_KEY_e, acute), std::nullopt);
}

}  // namespace
}  // namespace kivra
