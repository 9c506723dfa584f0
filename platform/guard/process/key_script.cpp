#include "platform/guard/process/key_script.h"

#include <optional>
#include <utility>

#include "platform/events.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::guard {

namespace {

// linux/input-event-codes.h
constexpr std::uint16_t evdevInsert = 110;

struct Shortcut {
  std::uint16_t evdev = 0;
  std::uint64_t flags = 0;
};

/// Command+C goes out as Ctrl+Insert: Ctrl+C would interrupt what runs in a terminal.
std::optional<Shortcut> shortcut(const PostedKey& key) {
  const auto evdev = evdevCode(key.keyCode);
  if (!evdev || *evdev >= KeyMap::keyLimit) return std::nullopt;
  Shortcut result{*evdev, key.flags};
  if ((key.flags & event_flags::command) == 0) return result;
  result.flags = (key.flags & ~event_flags::command) | event_flags::control;
  if (key.keyCode == key_codes::c) result.evdev = evdevInsert;
  return result;
}

class Writer {
 public:
  explicit Writer(const KeyScriptSituation& situation)
      : situation_(situation), group_(situation.group) {}

  KeyScript write(const std::vector<PostedKey>& keys) {
    releaseDown();
    for (const auto& key : keys) add(key);
    keepTriggerDown();
    liftAll();
    return {.body = std::move(steps_), .after = heldAgain()};
  }

 private:
  void releaseDown() {
    steps_ = tapBetween(situation_.keyMap, situation_.down);
    for (std::uint16_t key = 0; key < keyCount; ++key) {
      // Caps Lock, pressed to end it, ends with the release.
      const auto isDown = situation_.down.test(key) && !situation_.keyMap.isLock(key);
      if (isDown) add(Step::Kind::release, key);
    }
  }

  Steps heldAgain() const {
    Steps steps;
    for (std::uint16_t key = 0; key < KeyMap::keyLimit; ++key) {
      const auto flag = situation_.keyMap.flag(key);
      if (flag != 0 && (flag & tappedAlone) == 0 && situation_.held.test(key)) {
        steps.push_back({Step::Kind::press, key});
      }
    }
    return steps;
  }

  void add(Step::Kind kind, std::uint32_t value) { steps_.push_back({kind, value}); }

  void add(const PostedKey& key) {
    switch (key.kind) {
      case PostedKey::Kind::key:
        if (const auto found = shortcut(key)) stroke(found->evdev, key.down, found->flags);
        break;
      case PostedKey::Kind::character:
        addCharacter(key.value);
        break;
      case PostedKey::Kind::selectGroup:
        group_ = key.value;
        add(Step::Kind::selectGroup, key.value);
        break;
      case PostedKey::Kind::pause:
        pause(key.value);
        break;
    }
  }

  void addCharacter(std::uint32_t scalar) {
    // Behind one that is no key all may come like it, which saves pauses.
    const auto goesOn =
        hasCharactersApart() && !steps_.empty() && steps_.back().kind == Step::Kind::character;
    if (goesOn) {
      add(Step::Kind::character, scalar);
      return;
    }
    if (const auto key = situation_.keyMap.keyFor(scalar, group_)) {
      const auto isTurned = key->isCased && situation_.isCapsLocked;
      const auto flags = key->shift != isTurned ? event_flags::shift : 0;
      stroke(key->evdev, true, flags);
      stroke(key->evdev, false, flags);
      return;
    }
    setModifiers(0);
    if (hasCharactersApart()) {
      pause(static_cast<std::uint32_t>(situation_.pauseBeforeCharacters.count()));
    }
    add(Step::Kind::character, scalar);
  }

  bool hasCharactersApart() const { return situation_.pauseBeforeCharacters.count() > 0; }

  void pause(std::uint32_t milliseconds) {
    liftAll();
    add(Step::Kind::pause, milliseconds);
  }

  void stroke(std::uint16_t key, bool down, std::uint64_t flags) {
    if (down) setModifiers(flags);
    pressed_.set(key, down);
    add(down ? Step::Kind::press : Step::Kind::release, key);
  }

  void setModifiers(std::uint64_t flags) {
    const auto& map = situation_.keyMap;
    const struct {
      std::uint64_t flag;
      std::uint16_t key;
    } modifiers[] = {{event_flags::shift, map.shiftKey()},
                     {event_flags::control, map.controlKey()},
                     {event_flags::option, map.altKey()}};
    for (const auto& [flag, key] : modifiers) {
      if (key == 0 || ((flags ^ flags_) & flag) == 0) continue;
      add((flags & flag) != 0 ? Step::Kind::press : Step::Kind::release, key);
    }
    flags_ = flags;
  }

  void keepTriggerDown() {
    if (situation_.trigger == 0 || steps_.empty()) return;
    const Step release{Step::Kind::release, situation_.trigger};
    if (steps_.back() == release) steps_.pop_back();
  }

  void liftAll() {
    for (std::uint16_t key = 0; pressed_.any() && key < KeyMap::keyLimit; ++key) {
      if (pressed_.test(key)) stroke(key, false, 0);
    }
    setModifiers(0);
  }

  const KeyScriptSituation& situation_;
  std::uint32_t group_;
  std::uint64_t flags_ = 0;  // modifiers that the script holds
  KeySet pressed_;           // other keys that it holds
  Steps steps_;
};

}  // namespace

KeyScript writeKeyScript(const std::vector<PostedKey>& keys, const KeyScriptSituation& situation) {
  return Writer(situation).write(keys);
}

}  // namespace kivra::guard
