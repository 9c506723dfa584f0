#include "platform/ibus/guard/shell_outlet.h"

#include <linux/input-event-codes.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/xkb/virtual_keys.h"

namespace kivra::ibus {

namespace {

using namespace std::chrono_literals;

// Modifiers, of xkbcommon, X and IBus alike.
constexpr std::uint32_t shift = 1U << 0;
constexpr std::uint32_t control = 1U << 2;
constexpr std::uint32_t alt = 1U << 3;
constexpr std::uint32_t super = 1U << 6 | 1U << 26;  // IBus has it twice
constexpr std::uint32_t sendable = shift | control | alt;

// What the extension takes for an order. XF86Launch6 and the three after it select a layout; with
// Shift they give applications no modifier, Shift, Control or Alt.
constexpr std::uint32_t layoutMasks = control | alt | super;
constexpr std::uint32_t modifierMasks = shift | layoutMasks;
constexpr std::uint16_t firstMarker = KEY_F15;
constexpr std::uint16_t markerOfBoth = KEY_F14;  // XF86Launch5: Shift and Control

std::uint16_t markerOf(std::uint32_t modifiers) {
  if (modifiers == (shift | control)) return markerOfBoth;
  const auto number = (modifiers & control) != 0 ? 2 : (modifiers & alt) != 0 ? 3 : modifiers;
  return static_cast<std::uint16_t>(firstMarker + number);
}

// Hands let go of Shift within a moment.
constexpr auto longestWait = 500ms;

}  // namespace

ShellOutlet::ShellOutlet(Engine& engine)
    : engine_(engine), timer_(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {}

ShellOutlet::~ShellOutlet() {
  hands_ = 0;
  play();
  for (const auto& key : asked_) Engine::answer(key, false);
  hold(0);
  ::close(timer_);
}

void ShellOutlet::setHands(std::uint32_t modifiers) {
  hands_ = modifiers & (sendable | super);
  play();
}

void ShellOutlet::key(std::uint16_t evdev, bool isDown) {
  if (isPassing_) {
    answer(evdev, isDown, false);
  } else if (const auto symbol = this->symbol(evdev);
             symbol < XKB_KEY_Shift_L || symbol > XKB_KEY_Hyper_R) {
    add({TypedKey{evdev, isDown}, typed_});
  }
}

void ShellOutlet::modifiers(const wayland::Modifiers& modifiers) {
  typed_ = (modifiers.depressed | modifiers.latched) & sendable;
  if (modifiers.group == layouts_.group()) return;
  layouts_.send(modifiers.group);
  add({Layout{modifiers.group}, typed_});
}

void ShellOutlet::commit(std::uint32_t scalar) {
  std::array<char, 8> text{};
  xkb_keysym_to_utf8(xkb_utf32_to_keysym(scalar), text.data(), text.size());
  add({Text{text.data()}, typed_});
}

// A key that nobody has asked about goes nowhere: it is elsewhere that it was let go of.
void ShellOutlet::answer(std::uint16_t evdev, bool isDown, bool isConsumed) {
  const auto asked = std::ranges::find_if(asked_, [evdev, isDown](const auto& each) {
    return each.evdev == evdev && each.isDown == isDown;
  });
  if (asked == asked_.end()) return;
  Answer answer{std::move(*asked), isConsumed};
  asked_.erase(asked);
  add({std::move(answer), typed_});
}

void ShellOutlet::add(Output output) {
  outputs_.push_back(std::move(output));
  play();
}

void ShellOutlet::play() {
  while (!outputs_.empty() && !hasToWait(outputs_.front())) {
    send(outputs_.front());
    outputs_.pop_front();
  }
  setTimer(waitsUntil_.has_value());
}

bool ShellOutlet::hasToWait(const Output& output) {
  const auto now = std::chrono::steady_clock::now();
  const auto isKey = std::holds_alternative<TypedKey>(output.what);
  const auto isDisturbed = isKey && (hands_ & ~output.modifiers) != 0;
  if (!isDisturbed) {
    waitsUntil_.reset();
    return false;
  }
  if (!waitsUntil_) waitsUntil_ = now + longestWait;
  return now < *waitsUntil_;
}

void ShellOutlet::send(const Output& output) {
  if (const auto* answer = std::get_if<Answer>(&output.what)) {
    if (answer->key.isDown && !answer->isConsumed) hold(output.modifiers);
    Engine::answer(answer->key, answer->isConsumed);
  } else if (const auto* key = std::get_if<TypedKey>(&output.what)) {
    hold(output.modifiers);
    forward(key->evdev, key->isDown, output.modifiers);
  } else if (const auto* layout = std::get_if<Layout>(&output.what)) {
    forwardMarker(static_cast<std::uint16_t>(firstMarker + layout->group), layoutMasks);
  } else {
    engine_.commit(std::get<Text>(output.what).text);
  }
}

// Shift may have been let go of by the time that the shell comes to a key that was typed with it;
// what is done with others is done at once.
void ShellOutlet::hold(std::uint32_t wanted) {
  const auto modifiers = wanted & (shift | ~hands_);
  if (std::exchange(held_, modifiers) != modifiers) {
    forwardMarker(markerOf(modifiers), modifierMasks);
  }
}

void ShellOutlet::flush() {
  std::uint64_t expirations = 0;
  [[maybe_unused]] const auto size = ::read(timer_, &expirations, sizeof expirations);
  play();
  if (outputs_.empty()) hold(held_ & typed_);
}

void ShellOutlet::forward(std::uint16_t evdev, bool isDown, std::uint32_t state) {
  engine_.forward(evdev, symbol(evdev), isDown ? state : state | Engine::released);
}

// The shell takes the press to itself; of the release it would tell applications.
void ShellOutlet::forwardMarker(std::uint16_t evdev, std::uint32_t masks) {
  forward(evdev, true, masks);
}

xkb_keysym_t ShellOutlet::symbol(std::uint16_t evdev) const {
  const xkb_keysym_t* symbols = nullptr;
  const auto count = xkb_keymap_key_get_syms_by_level(map_.get(), xkbCode(evdev), 0, 0, &symbols);
  return count > 0 ? symbols[0] : XKB_KEY_NoSymbol;
}

void ShellOutlet::setTimer(bool isOn) const {
  itimerspec time{};
  if (isOn) time.it_value.tv_nsec = std::chrono::nanoseconds(longestWait).count();
  ::timerfd_settime(timer_, 0, &time, nullptr);
}

}  // namespace kivra::ibus
