#include "platform/x11/guard/session_keyboard.h"

#include <X11/XKBlib.h>
#include <xkbcommon/xkbcommon.h>

#include <memory>
#include <utility>

#include "platform/xkb/virtual_keys.h"

namespace kivra::x11 {

namespace {

KeyMap parsed(const std::string& text) {
  const std::unique_ptr<xkb_context, void (*)(xkb_context*)> context(
      xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref);
  const std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)> map(
      xkb_keymap_new_from_string(context.get(), text.c_str(), XKB_KEYMAP_FORMAT_TEXT_V1,
                                 XKB_KEYMAP_COMPILE_NO_FLAGS),
      xkb_keymap_unref);
  return map ? KeyMap(map.get()) : KeyMap();
}

}  // namespace

SessionKeyboard::SessionKeyboard(Display* display, XtestKeyboard& xtest)
    : display_(display), xtest_(xtest), maps_(display), controls_(display), spares_(display) {
  controls_.takeFilters();
  readMap();
}

SessionKeyboard::~SessionKeyboard() {
  spares_.unbind();
  controls_.giveFiltersBack();
}

void SessionKeyboard::add(int keyboard) {
  mapTexts_[keyboard] = maps_.text(keyboard);
  copyState(keyboard);
  controls_.giveTo(keyboard);
  constexpr unsigned int map = XkbNewKeyboardNotifyMask | XkbMapNotifyMask;
  XkbSelectEvents(display_, static_cast<unsigned int>(keyboard), map, map);
  if (mapOwner_ == 0) useMapOf(keyboard);
}

void SessionKeyboard::readMapOf(int keyboard) {
  const auto text = maps_.text(keyboard);
  if (text == std::exchange(mapTexts_[keyboard], text) || mapOwner_ != keyboard) return;
  mapOwner_ = 0;
  useMapOf(keyboard);
}

void SessionKeyboard::useMapOf(int keyboard) {
  if (mapOwner_ == keyboard) return;
  const auto& text = mapTexts_[keyboard];
  // The one before may be gone.
  const auto before = mapTexts_.find(std::exchange(mapOwner_, keyboard));
  const auto isSame = before != mapTexts_.end() && text == before->second;
  if (text.empty() || isSame || text == mapText_) return;
  maps_.copy(keyboard, xtest_.device());
  readMap();
  // The session takes a device's map over when the device types.
  if (const auto key = keyMap_.emptyKey(); key != 0) {
    const auto code = static_cast<std::uint8_t>(xkbCode(key));
    xtest_.send(code, true);
    xtest_.send(code, false);
  }
}

void SessionKeyboard::readMap() {
  mapText_ = maps_.text(xtest_.device());
  keyMap_ = parsed(mapText_);
  spares_.readMap();
}

void SessionKeyboard::spreadMap() {
  if (maps_.text(xtest_.device()) == mapText_) return;
  spares_.unbind();
  readMap();
  for (auto& [keyboard, text] : mapTexts_) {
    maps_.copy(xtest_.device(), keyboard);
    text = maps_.text(keyboard);
    copyState(keyboard);
  }
}

void SessionKeyboard::spreadState() const {
  for (const auto& [keyboard, text] : mapTexts_) copyState(keyboard);
}

void SessionKeyboard::spreadControls() {
  controls_.takeFilters();
  for (const auto& [keyboard, text] : mapTexts_) controls_.giveTo(keyboard);
}

// The lights of a keyboard show its own locks.
void SessionKeyboard::copyState(int keyboard) const {
  XkbStateRec state{};
  XkbGetState(display_, XkbUseCoreKbd, &state);
  constexpr unsigned int allModifiers = 0xFF;
  XkbLockModifiers(display_, static_cast<unsigned int>(keyboard), allModifiers, state.locked_mods);
  XkbLockGroup(display_, static_cast<unsigned int>(keyboard), state.locked_group);
}

}  // namespace kivra::x11
