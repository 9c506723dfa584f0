#include "layout/typed_since.h"

#include <utility>

#include "platform/events.h"
#include "support/text.h"

namespace kivra {

namespace {

/// Keys that end a field, a message or a line.
bool leavesLine(std::uint16_t keyCode) {
  return keyCode == key_codes::returnKey || keyCode == key_codes::tab ||
         keyCode == key_codes::keypadEnter;
}

}  // namespace

void TypedSince::begin() {
  characters_.clear();
  state_ = settings_.extendedRules() ? State::within : State::notFollowed;
  place_ = workspace_.placesOfCursor();
}

void TypedSince::typed(std::uint16_t keyCode, bool shift) {
  if (!settings_.extendedRules()) state_ = State::notFollowed;
  if (state_ != State::within) return;
  if (keyCode == key_codes::deleteKey) return erase();
  auto character = characterOf(keyCode, shift);
  if (!character || leavesLine(keyCode) || characters_.size() == farthest) return lose();
  characters_.push_back(*std::move(character));
}

// What one Delete erases again: no dead key and no key that moves the cursor.
std::optional<std::string> TypedSince::characterOf(std::uint16_t keyCode, bool shift) const {
  const auto language = map_.currentLanguage();
  const auto* layout = language == "ru"   ? map_.russian()
                       : language == "en" ? map_.english()
                                          : nullptr;
  if (layout == nullptr) return std::nullopt;
  auto character = layout->character(keyCode, shift);
  const auto scalar = character ? text::firstScalar(*character) : std::nullopt;
  const auto isControl = !scalar || *scalar < U' ' || *scalar == 0x7F;
  return isControl ? std::nullopt : std::move(character);
}

void TypedSince::erase() {
  if (characters_.empty()) return lose();
  characters_.pop_back();
}

void TypedSince::lose() {
  characters_.clear();
  if (state_ == State::within) state_ = State::lost;
}

bool TypedSince::isWithinReach() const {
  return state_ == State::within && place_ == workspace_.placesOfCursor();
}

}  // namespace kivra
