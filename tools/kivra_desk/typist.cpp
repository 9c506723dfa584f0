#include "typist.h"

#include <algorithm>
#include <chrono>
#include <optional>

#include "platform/xkb/xkb_layout.h"
#include "support/text.h"

namespace kivra::desk {

namespace {

constexpr std::chrono::milliseconds timePerCharacter(20);

/// Keys in the order of preference for a character that stands on several: the main block, then the
/// key beside the left Shift that not every keyboard has, then the rest (the keypad).
std::vector<std::uint16_t> keysByPreference() {
  constexpr std::uint16_t isoKey = 10;
  constexpr std::uint16_t lastMainKey = 50;
  std::vector<std::uint16_t> keys;
  for (std::uint16_t code = 0; code < 128; ++code) keys.push_back(code);
  std::ranges::stable_sort(keys, {}, [](std::uint16_t code) {
    return code == isoKey ? 1 : code <= lastMainKey ? 0 : 2;
  });
  return keys;
}

bool isPrintable(const std::string& character) {
  return static_cast<unsigned char>(character.front()) >= 0x20 && character != "\x7F";
}

}  // namespace

Typist::Typist(embedded::EmbeddedDesktop& desktop, AfterKey afterKey)
    : desktop_(desktop), afterKey_(std::move(afterKey)) {
  learnKeys();
}

void Typist::learnKeys() {
  keys_.clear();
  for (const auto* lineBreak : {"\n", "\r\n", "\r"}) {
    keys_.emplace(lineBreak, Key{key_codes::returnKey});
  }
  keys_.emplace("\t", Key{key_codes::tab});
  learnLayout("en", "us");
  learnLayout("ru", "ru");
}

void Typist::learnLayout(const std::string& language, const std::string& fallbackLayout) {
  auto layout = enabledLayout(language);
  if (!layout) layout = XkbLayout::named(fallbackLayout);
  if (!layout) return;
  for (const auto shift : {false, true}) {
    for (const auto code : keysByPreference()) {
      const auto character =
          desktop_.inputSources.keyTranslate(*layout, code, shift ? translateShift : 0, 0);
      if (character && isPrintable(*character)) keys_.emplace(*character, Key{code, shift});
    }
  }
}

std::shared_ptr<const KeyboardLayoutData> Typist::enabledLayout(const std::string& language) const {
  const auto sources = desktop_.inputSources.createInputSourceList();
  for (const auto& source : *sources) {
    const auto isKeyboard =
        source->category == keyboardInputSourceCategory && source->isSelectCapable;
    const auto matches =
        source->languages && !source->languages->empty() && source->languages->front() == language;
    if (isKeyboard && matches && source->unicodeKeyLayoutData) return source->unicodeKeyLayoutData;
  }
  return nullptr;
}

void Typist::type(std::string_view text) {
  for (const auto& character : text::characters(text)) typeCharacter(character);
  holdShift(false);
}

void Typist::typeCharacter(const std::string& character) {
  if (const auto key = keys_.find(character); key != keys_.end()) {
    holdShift(key->second.shift);
    press(key->second);
  } else {
    holdShift(false);
    insertWithoutKey(character);
  }
  desktop_.time.runFor(timePerCharacter);
}

void Typist::press(const Key& key) {
  const auto passed = desktop_.events.send({.type = EventType::keyDown,
                                            .keyCode = key.code,
                                            .flags = key.shift ? event_flags::shift : 0});
  if (afterKey_) afterKey_(key.code, passed);
}

void Typist::holdShift(bool hold) {
  if (hold == isShiftHeld_) return;
  isShiftHeld_ = hold;
  desktop_.events.send({.type = EventType::flagsChanged,
                        .keyCode = key_codes::leftShift,
                        .flags = hold ? event_flags::shift : 0});
}

void Typist::insertWithoutKey(const std::string& character) {
  desktop_.events.send({.type = EventType::leftMouseDown});
  desktop_.application.insert(character);
}

}  // namespace kivra::desk
