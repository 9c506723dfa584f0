#include "platform/embedded/embedded_application.h"

#include <utility>

#include "platform/xkb/xkb_layout.h"

namespace kivra::embedded {

namespace {

constexpr std::uint16_t forwardDelete = 117;
constexpr std::uint32_t spaceSymbol = 0x20;

bool isControlCharacter(const std::string& character) {
  return character.size() == 1 &&
         (static_cast<unsigned char>(character[0]) < 0x20 || character[0] == 0x7F);
}

}  // namespace

void EmbeddedApplication::focus(FrontApplication front) {
  cursorMoved();
  front_ = std::move(front);
  deadKey_.reset();
}

void EmbeddedApplication::keyDown(std::uint16_t keyCode, std::uint64_t flags,
                                  const std::string& unicodeString) {
  constexpr auto withoutText = event_flags::control | event_flags::option;
  if (!unicodeString.empty()) {
    insert(unicodeString);
  } else if ((flags & (withoutText | event_flags::command)) != 0) {
    deadKey_.reset();
    if ((flags & (withoutText | event_flags::shift)) == 0) commandKey(keyCode);
  } else {
    const auto shift = (flags & event_flags::shift) != 0;
    if (!editingKey(keyCode, shift)) characterKey(keyCode, shift);
  }
}

void EmbeddedApplication::insert(const std::string& text) {
  deadKey_.reset();
  front_.field.insert(text);
}

void EmbeddedApplication::commandKey(std::uint16_t keyCode) {
  auto& field = front_.field;
  switch (keyCode) {
    case key_codes::a:
      field.selectAll();
      break;
    case key_codes::c:
    case key_codes::x:
      if (field.selectedText().empty() || front_.secure) break;
      if (keyCode == key_codes::c && !front_.copies) break;
      pasteboard_.copy(field.selectedText());
      if (keyCode == key_codes::x) field.deleteBackward();
      break;
    case key_codes::v:
      if (const auto text = pasteboard_.stringForType(pasteboardTypeString)) field.paste(*text);
      break;
    case key_codes::z:
      field.undoPaste();
      break;
    default:
      break;
  }
}

bool EmbeddedApplication::editingKey(std::uint16_t keyCode, bool shift) {
  auto& field = front_.field;
  switch (keyCode) {
    case key_codes::deleteKey:
      field.deleteBackward();
      break;
    case forwardDelete:
      field.deleteForward();
      break;
    case key_codes::returnKey:
    case key_codes::keypadEnter:
      field.insert("\n");
      break;
    case key_codes::tab:
      field.insert("\t");
      break;
    case key_codes::leftArrow:
      field.move(TextField::Target::left, shift);
      break;
    case key_codes::rightArrow:
      field.move(TextField::Target::right, shift);
      break;
    case key_codes::upArrow:
      field.move(TextField::Target::beginning, shift);
      break;
    case key_codes::downArrow:
      field.move(TextField::Target::end, shift);
      break;
    case key_codes::escape:
      break;
    default:
      return false;
  }
  deadKey_.reset();
  return true;
}

void EmbeddedApplication::characterKey(std::uint16_t keyCode, bool shift) {
  const auto source = sources_.copyCurrentKeyboardInputSource();
  const auto* layout =
      source ? dynamic_cast<const XkbLayout*>(source->unicodeKeyLayoutData.get()) : nullptr;
  if (layout == nullptr) return;
  const auto character = layout->character(keyCode, shift);
  if (character && isControlCharacter(*character)) return;
  const auto symbol = layout->symbol(keyCode, shift);
  if (symbol == 0) return;
  if (const auto dead = std::exchange(deadKey_, std::nullopt)) {
    if (const auto combined = compose_.combined(*dead, symbol)) {
      front_.field.insert(*combined);
      return;
    }
    front_.field.insert(compose_.combined(*dead, spaceSymbol).value_or(""));
  }
  if (character) {
    front_.field.insert(*character);
  } else if (compose_.isDead(symbol)) {
    deadKey_ = symbol;
  }
}

}  // namespace kivra::embedded
