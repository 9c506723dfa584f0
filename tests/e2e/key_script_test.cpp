// Before the X headers, whose macros are words that it uses.
#include <gtest/gtest.h>

#include "platform/events.h"
#include "platform/x11/key_script.h"
#include "platform/x11/x_display.h"
#include "x_session.h"

namespace kivra::x11 {
namespace {

constexpr std::uint8_t controlCode = 37;
constexpr std::uint8_t shiftCode = 50;
constexpr std::uint8_t capsCode = 66;

/// Against the keyboard map of a real server.
class KeyScriptTest : public testing::Test {
 protected:
  using Script = std::vector<ScriptedKey>;

  Script write(const std::vector<PostedKey>& keys) {
    return KeyScript({.modifiers = map,
                      .now = down,
                      .then = down,
                      .capsLock = capsLock,
                      .characterKey = [](std::uint32_t scalar) -> std::optional<CharacterKey> {
                        if (scalar == 0x1F600) return CharacterKey{200, false};
                        return std::nullopt;
                      }})
        .write(keys);
  }

  e2e::XSession session{{.windowManager = false, .accessibility = false}};
  DisplayPointer display{XOpenDisplay(session.display().c_str())};
  ModifierMap map{display.get()};
  std::bitset<256> down;
  bool capsLock = false;
};

TEST_F(KeyScriptTest, KeysGetExactlyTheirModifiers) {
  EXPECT_EQ(write({{.keyCode = 0, .flags = event_flags::shift},
                   {.down = false, .keyCode = 0, .flags = event_flags::shift},
                   {.keyCode = 1},
                   {.down = false, .keyCode = 1}}),
            (Script{{shiftCode, true},
                    {38, true},
                    {38, false},
                    {shiftCode, false},
                    {39, true},
                    {39, false}}));
}

TEST_F(KeyScriptTest, HeldModifiersAndCapsLockAreLifted) {
  down.set(controlCode);
  capsLock = true;
  EXPECT_EQ(write({{.keyCode = 0, .userData = 7}, {.down = false, .keyCode = 0, .userData = 7}}),
            (Script{{controlCode, false, 7},
                    {capsCode, true, 7},
                    {capsCode, false, 7},
                    {38, true, 7},
                    {38, false, 7},
                    {capsCode, true, 7},
                    {capsCode, false, 7},
                    {controlCode, true, 7}}));
}

TEST_F(KeyScriptTest, CommandChordsAreTheDesktopsOwn) {
  EXPECT_EQ(write({{.keyCode = key_codes::c, .flags = event_flags::command},
                   {.down = false, .keyCode = key_codes::c, .flags = event_flags::command}}),
            (Script{{controlCode, true}, {118, true}, {118, false}, {controlCode, false}}));
}

TEST_F(KeyScriptTest, CharactersWithoutAKeyAreLeftOut) {
  EXPECT_EQ(write({{.kind = PostedKey::Kind::character, .value = 0x1F600},
                   {.kind = PostedKey::Kind::character, .value = 0x1F601}}),
            (Script{{200, true}, {200, false}}));
}

}  // namespace
}  // namespace kivra::x11
