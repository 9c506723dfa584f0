#include "platform/x11/guard/spare_keys.h"

#include <X11/XKBlib.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>

#include "platform/x11/guard/x_display.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::x11 {

namespace {

constexpr int symbolsPerCode = 4;  // two groups of two levels, all the same

/// Tells all clients the group once more: some forget it when they read a changed keyboard map, and
/// the server tells of changes only.
void announceGroup(Display* display) {
  XkbStateRec state{};
  XkbGetState(display, XkbUseCoreKbd, &state);
  XkbLockGroup(display, XkbUseCoreKbd, state.group == 0 ? 1 : 0);
  XkbLockGroup(display, XkbUseCoreKbd, state.group);
}

}  // namespace

void SpareKeys::readMap() {
  spares_.clear();
  int perCode = 0;
  const std::unique_ptr<KeySym, int (*)(void*)> symbols(
      XGetKeyboardMapping(display_, firstKeyCode, keyCodeLimit - firstKeyCode, &perCode), XFree);
  for (int code = firstKeyCode; symbols && code < keyCodeLimit; ++code) {
    const auto* first = symbols.get() + std::ptrdiff_t{code - firstKeyCode} * perCode;
    const auto isFree =
        std::all_of(first, first + perCode, [](KeySym symbol) { return symbol == NoSymbol; });
    // A code that the table of real keys knows may be pressed by somebody.
    if (isFree && !virtualKey(evdevOfXkb(static_cast<std::size_t>(code)))) {
      spares_.push_back({.code = static_cast<std::uint8_t>(code)});
    }
  }
  // The last one stays without a character, for a key that does nothing.
  if (!spares_.empty()) spares_.pop_back();
}

std::optional<std::uint8_t> SpareKeys::find(std::uint32_t scalar) {
  if (spares_.empty()) return std::nullopt;
  auto spare = std::ranges::find(spares_, scalar, &Spare::scalar);
  if (spare == spares_.end()) {
    spare = std::ranges::min_element(spares_, {}, &Spare::lastUse);
    bind(*spare, scalar);
    announceGroup(display_);
  }
  spare->lastUse = ++uses_;
  return spare->code;
}

bool SpareKeys::areSpare(int first, int count) const {
  for (int code = first; code < first + count; ++code) {
    const auto isSpare = std::ranges::any_of(
        spares_, [code](const Spare& spare) { return int{spare.code} == code; });
    if (!isSpare) return false;
  }
  return true;
}

void SpareKeys::bind(Spare& spare, std::uint32_t scalar) {
  // The same symbol with and without Shift: nothing may turn it into another case.
  std::array<KeySym, symbolsPerCode> symbols{};
  symbols.fill(scalar == 0 ? NoSymbol : KeySym{xkb_utf32_to_keysym(scalar)});
  XChangeKeyboardMapping(display_, spare.code, symbolsPerCode, symbols.data(), 1);
  spare.scalar = scalar;
}

void SpareKeys::unbind() {
  for (auto& spare : spares_) {
    if (spare.scalar != 0) bind(spare, 0);
  }
  XSync(display_, False);
}

}  // namespace kivra::x11
