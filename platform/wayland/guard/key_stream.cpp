#include "platform/wayland/guard/key_stream.h"

#include "platform/xkb/virtual_keys.h"

namespace kivra::wayland {

void KeyStream::setMap(const std::string& text) {
  isMapDue_ = true;
  if (text == mapText_) return;
  auto map = compiledMap(text);
  if (!map) return;
  const auto before = state_ ? state_->modifiers() : Modifiers();
  mapText_ = text;
  map_ = std::move(map);
  keyMap_ = KeyMap(map_.get());
  spares_ = SpareKeys(map_.get());
  state_.emplace(map_);
  for (std::uint16_t key = 0; key < guard::keyCount; ++key) {
    if (down_.test(key)) state_->key(key, true);
  }
  auto now = state_->modifiers();
  now.locked = before.locked;
  now.group = before.group;
  state_->set(now);
}

bool KeyStream::isCapsLocked() const {
  if (!state_) return false;
  const auto index = xkb_keymap_mod_get_index(map_.get(), XKB_MOD_NAME_CAPS);
  return index != XKB_MOD_INVALID && (state_->modifiers().locked >> index & 1U) != 0;
}

void KeyStream::send(std::uint16_t evdev, bool isDown) {
  if (!state_) return;
  if (isMapDue_) sendMap();
  down_.set(evdev, isDown);
  outlet_.key(evdev, isDown);
  state_->key(evdev, isDown);
  sendModifiers();
  if (!isDown) {
    repeats_.release(evdev);
  } else if (xkb_keymap_key_repeats(map_.get(), xkbCode(evdev)) != 0) {
    repeats_.press(evdev);
  }
}

void KeyStream::type(const guard::Steps& steps) {
  using Kind = guard::Step::Kind;
  bindCharacters(steps);
  for (const auto& step : steps) {
    switch (step.kind) {
      case Kind::press:
      case Kind::release:
        send(static_cast<std::uint16_t>(step.value), step.kind == Kind::press);
        break;
      case Kind::selectGroup:
        if (!state_) break;
        {
          auto modifiers = state_->modifiers();
          modifiers.group = step.value;
          state_->set(modifiers);
        }
        sendModifiers();
        break;
      case Kind::character:
        bindCharacters({step});
        if (isMapDue_) sendMap();
        if (const auto key = spares_.find(step.value)) {
          send(*key, true);
          send(*key, false);
        } else {
          outlet_.commit(step.value);
        }
        break;
      case Kind::pause:
        break;
    }
  }
}

void KeyStream::release() {
  for (std::uint16_t key = 0; key < guard::keyCount; ++key) {
    if (down_.test(key)) send(key, false);
  }
}

void KeyStream::follow(const Modifiers& explained, const Modifiers& told) {
  if (!state_) return;
  auto modifiers = state_->modifiers();
  const auto changed = explained.locked ^ told.locked;
  modifiers.locked = (modifiers.locked & ~changed) | (told.locked & changed);
  if (told.group != explained.group) modifiers.group = told.group;
  state_->set(modifiers);
  foreign_ = (foreign_ | (told.depressed & ~explained.depressed)) & told.depressed;
  sendModifiers();
}

void KeyStream::sendMap() {
  isMapDue_ = false;
  if (outlet_.setMap(spares_.extended(mapText_))) {
    // The compositor takes the modifiers for what the keys that are down make of them, and tells
    // the application only what changes after that.
    outlet_.modifiers({});
    sent_ = {};
  } else {
    spares_ = {};
  }
  sendModifiers();
}

void KeyStream::sendModifiers() {
  if (isMapDue_) return;
  auto modifiers = state_->modifiers();
  modifiers.depressed |= foreign_;
  if (modifiers == sent_) return;
  outlet_.modifiers(modifiers);
  sent_ = modifiers;
}

void KeyStream::bindCharacters(const guard::Steps& steps) {
  bool isChanged = false;
  for (const auto& step : steps) {
    const auto isCharacter = step.kind == guard::Step::Kind::character;
    if (isCharacter && spares_.bind(step.value)) isChanged = true;
  }
  if (isChanged) isMapDue_ = true;
}

}  // namespace kivra::wayland
