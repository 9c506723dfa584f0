#include "layout/keycode_map.h"

#include <utility>

#include "support/text.h"

namespace kivra {

Layout::Layout(std::shared_ptr<const InputSource> source, std::string language,
               InputSources& inputSources)
    : source_(std::move(source)), language_(std::move(language)), inputSources_(&inputSources) {
  for (std::uint16_t keyCode = 0; keyCode < cachedKeys; ++keyCode) {
    characters_[keyCode] = {translate(keyCode, false), translate(keyCode, true)};
  }
}

std::optional<std::string> Layout::character(std::uint16_t keyCode, bool shift) const {
  return keyCode < cachedKeys ? characters_[keyCode][shift ? 1 : 0] : translate(keyCode, shift);
}

std::optional<std::string> Layout::translate(std::uint16_t keyCode, bool shift) const {
  auto character =
      inputSources_->keyTranslate(*source_->unicodeKeyLayoutData, keyCode,
                                  shift ? translateShift : 0, inputSources_->keyboardType());
  return character && !character->empty() ? std::move(character) : std::nullopt;
}

KeycodeMap::KeycodeMap(InputSources& inputSources) : inputSources_(inputSources) {
  discover();
  for (std::uint16_t keyCode = 0; keyCode < cachedKeys; ++keyCode) {
    wordKeys_[keyCode] = {computeIsWordKey(keyCode, false), computeIsWordKey(keyCode, true)};
  }
}

void KeycodeMap::discover() {
  const auto sources = inputSources_.createInputSourceList();
  if (!sources) return;
  for (const auto& source : *sources) {
    if (source->category != keyboardInputSourceCategory || !source->isSelectCapable ||
        !source->languages || source->languages->empty() || !source->unicodeKeyLayoutData) {
      continue;
    }
    const auto& language = source->languages->front();
    if (language == "ru" && !russian_) {
      russian_.emplace(source, language, inputSources_);
    } else if (language == "en" && !english_) {
      english_.emplace(source, language, inputSources_);
    }
  }
}

std::optional<std::string> KeycodeMap::currentLanguage() const {
  const auto source = inputSources_.copyCurrentKeyboardInputSource();
  if (!source || !source->languages || source->languages->empty()) return std::nullopt;
  return source->languages->front();
}

std::string KeycodeMap::text(const Word& word, const Layout& layout) {
  std::string result;
  for (const auto& keystroke : word) {
    if (const auto character = layout.character(keystroke.keyCode, keystroke.shift)) {
      result += *character;
    }
  }
  return result;
}

bool KeycodeMap::isWordKey(std::uint16_t keyCode, bool shift) const {
  return keyCode < cachedKeys ? wordKeys_[keyCode][shift ? 1 : 0]
                              : computeIsWordKey(keyCode, shift);
}

bool KeycodeMap::isMark(std::uint16_t keyCode, bool shift) const {
  if (!russian_ || !english_ || isWordKey(keyCode, shift)) return false;
  const auto givesMark = [&](const Layout& layout) {
    const auto character = layout.character(keyCode, shift);
    const auto scalar = character ? text::firstScalar(*character) : std::nullopt;
    return scalar && text::isPunctuation(*scalar);
  };
  return givesMark(*russian_) || givesMark(*english_);
}

std::vector<Keystroke> KeycodeMap::marks() const {
  std::vector<Keystroke> found;
  for (std::uint16_t keyCode = 0; keyCode < cachedKeys; ++keyCode) {
    for (const auto shift : {false, true}) {
      if (isMark(keyCode, shift)) found.push_back({keyCode, shift});
    }
  }
  return found;
}

bool KeycodeMap::computeIsWordKey(std::uint16_t keyCode, bool shift) const {
  return russian_ && english_ &&
         (givesLetterOrDigit(*russian_, keyCode, shift) ||
          givesLetterOrDigit(*english_, keyCode, shift));
}

bool KeycodeMap::givesLetterOrDigit(const Layout& layout, std::uint16_t keyCode, bool shift) {
  const auto character = layout.character(keyCode, shift);
  if (!character || text::characterCount(*character) != 1) return false;
  const auto scalar = *text::firstScalar(*character);
  return text::isLetter(scalar) || text::isDecimalDigit(scalar);
}

}  // namespace kivra
