#include "platform/x11/key_script.h"

#include "platform/events.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::x11 {

namespace {

// linux/input-event-codes.h
constexpr std::uint16_t evdevInsert = 110;

std::uint8_t keyCodeOf(std::uint16_t evdev) {
  const auto code = evdev + xkbOffset;
  return code > 255 ? std::uint8_t{0} : static_cast<std::uint8_t>(code);
}

struct Shortcut {
  std::uint8_t code = 0;
  std::uint64_t flags = 0;
};

/// Command+C goes out as Ctrl+Insert: Ctrl+C would interrupt what runs in a terminal.
Shortcut shortcut(const PostedKey& key) {
  const auto evdev = evdevCode(key.keyCode);
  Shortcut result{evdev ? keyCodeOf(*evdev) : std::uint8_t{0}, key.flags};
  if ((key.flags & event_flags::command) == 0) return result;
  result.flags = (key.flags & ~event_flags::command) | event_flags::control;
  if (key.keyCode == key_codes::c) result.code = keyCodeOf(evdevInsert);
  return result;
}

}  // namespace

std::vector<ScriptedKey> KeyScript::write(const std::vector<PostedKey>& keys) {
  const auto marker = keys.empty() ? 0 : keys.front().userData;
  giveModifiers(situation_.now, false, marker);
  tapCapsLock(marker);
  for (const auto& key : keys) add(key);
  setModifiers(0, marker);
  tapCapsLock(marker);
  giveModifiers(situation_.then, true, marker);
  return std::move(script_);
}

// A tap of the key itself stays in order with what else is queued; a request would not.
void KeyScript::tapCapsLock(std::int64_t userData) {
  const auto key = situation_.modifiers.capsLockKey();
  if (!situation_.capsLock || key == 0) return;
  send(key, true, userData);
  send(key, false, userData);
}

void KeyScript::giveModifiers(const std::bitset<256>& keys, bool down, std::int64_t userData) {
  for (std::size_t code = 0; code < keys.size(); ++code) {
    const auto key = static_cast<std::uint8_t>(code);
    if (keys.test(code) && situation_.modifiers.flag(key) != 0) send(key, down, userData);
  }
}

void KeyScript::add(const PostedKey& key) {
  if (key.kind == PostedKey::Kind::character) {
    addCharacter(key);
  } else if (key.kind == PostedKey::Kind::key) {
    const auto [code, flags] = shortcut(key);
    if (code != 0) stroke(code, key.down, flags, key.userData);
  }
}

void KeyScript::addCharacter(const PostedKey& key) {
  const auto found = situation_.characterKey(key.value);
  if (!found) return;
  const auto flags = found->shift ? event_flags::shift : 0;
  stroke(found->code, true, flags, key.userData);
  stroke(found->code, false, flags, key.userData);
}

void KeyScript::stroke(std::uint8_t code, bool down, std::uint64_t flags, std::int64_t userData) {
  if (down) setModifiers(flags, userData);
  send(code, down, userData);
}

void KeyScript::setModifiers(std::uint64_t flags, std::int64_t userData) {
  const auto& map = situation_.modifiers;
  const struct {
    std::uint64_t flag;
    std::uint8_t code;
  } modifiers[] = {{event_flags::shift, map.shiftKey()},
                   {event_flags::control, map.controlKey()},
                   {event_flags::option, map.altKey()}};
  for (const auto& [flag, code] : modifiers) {
    if (code == 0 || ((flags ^ flags_) & flag) == 0) continue;
    send(code, (flags & flag) != 0, userData);
  }
  flags_ = flags;
}

void KeyScript::send(std::uint8_t code, bool down, std::int64_t userData) {
  script_.push_back({code, down, userData});
}

}  // namespace kivra::x11
