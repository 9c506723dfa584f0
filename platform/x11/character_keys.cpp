#include "platform/x11/character_keys.h"

#include <X11/XKBlib.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <cstddef>
#include <memory>

#include "platform/x11/x_display.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::x11 {

namespace {

constexpr int symbolsPerCode = 4;  // two groups of two levels, all the same

// Keypad keys depend on Num Lock.
bool isKeypad(std::uint8_t code) {
  const auto key = virtualKey(static_cast<std::uint16_t>(code - xkbOffset));
  return !key || (*key >= 65 && *key <= 95);
}

std::uint32_t scalarOf(Display* display, std::uint8_t code, unsigned group, int level) {
  const auto symbol = XkbKeycodeToKeysym(display, code, static_cast<int>(group), level);
  if (symbol == NoSymbol) return 0;
  const auto scalar = xkb_keysym_to_utf32(static_cast<xkb_keysym_t>(symbol));
  return scalar == '\r' ? '\n' : scalar;
}

/// The key codes that give nothing.
std::vector<std::uint8_t> codesWithoutSymbols(Display* display) {
  int perCode = 0;
  const std::unique_ptr<KeySym, int (*)(void*)> symbols(
      XGetKeyboardMapping(display, firstKeyCode, keyCodeLimit - firstKeyCode, &perCode), XFree);
  std::vector<std::uint8_t> codes;
  for (int code = firstKeyCode; symbols && code < keyCodeLimit; ++code) {
    const auto* first = symbols.get() + std::ptrdiff_t{code - firstKeyCode} * perCode;
    if (std::all_of(first, first + perCode, [](KeySym symbol) { return symbol == NoSymbol; })) {
      codes.push_back(static_cast<std::uint8_t>(code));
    }
  }
  return codes;
}

}  // namespace

void CharacterKeys::readMap() {
  for (unsigned group = 0; group < maxGroups; ++group) {
    keys_[group].clear();
    for (int level = 0; level < 2; ++level) {
      for (int i = firstKeyCode; i < keyCodeLimit; ++i) {
        const auto code = static_cast<std::uint8_t>(i);
        if (isKeypad(code)) continue;
        const auto scalar = scalarOf(display_, code, group, level);
        if (scalar != 0) keys_[group].try_emplace(scalar, CharacterKey{code, level == 1});
      }
    }
  }
  for (const auto code : codesWithoutSymbols(display_)) {
    // A code that the table of real keys knows may be pressed by somebody.
    if (isSpare(code) || virtualKey(static_cast<std::uint16_t>(code - xkbOffset))) continue;
    spares_.push_back({.code = code});
  }
}

bool CharacterKeys::isSpare(std::uint8_t code) const {
  return std::ranges::any_of(spares_, [code](const Spare& spare) { return spare.code == code; });
}

std::optional<CharacterKey> CharacterKeys::find(std::uint32_t scalar, std::uint32_t group) {
  const auto& keys = keys_[std::min<std::size_t>(group, maxGroups - 1)];
  if (const auto key = keys.find(scalar); key != keys.end()) return key->second;
  if (spares_.empty()) return std::nullopt;
  auto spare = std::ranges::find(spares_, scalar, &Spare::scalar);
  if (spare == spares_.end()) {
    spare = std::ranges::min_element(spares_, {}, &Spare::lastUse);
    bind(*spare, scalar);
  }
  spare->lastUse = ++uses_;
  return CharacterKey{spare->code, false};
}

void CharacterKeys::bind(Spare& spare, std::uint32_t scalar) {
  // The same symbol with and without Shift: nothing may turn it into another case.
  std::array<KeySym, symbolsPerCode> symbols{};
  symbols.fill(scalar == 0 ? NoSymbol : KeySym{xkb_utf32_to_keysym(scalar)});
  XChangeKeyboardMapping(display_, spare.code, symbolsPerCode, symbols.data(), 1);
  spare.scalar = scalar;
  hasBound_ = true;
}

void CharacterKeys::unbind() {
  for (auto& spare : spares_) {
    if (spare.scalar != 0) bind(spare, 0);
  }
  XSync(display_, False);
}

}  // namespace kivra::x11
