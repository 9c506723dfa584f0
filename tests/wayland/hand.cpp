#include "hand.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <stdexcept>
#include <thread>
#include <vector>

#include "fake-input-client-protocol.h"
#include "remote_keyboard.h"

namespace kivra::e2e {

namespace {

using Clock = std::chrono::steady_clock;

struct Event {
  std::chrono::microseconds time;
  std::uint16_t evdev = 0;
  bool isDown = true;
};

std::vector<Event> eventsOf(std::string_view text, const Pace& pace) {
  std::vector<Event> events;
  std::chrono::microseconds time{0};
  for (std::size_t i = 0; i < text.size(); ++i, time += pace.key) {
    constexpr int steps = 7;  // of `spread`, in no simple order
    auto hold = pace.hold + pace.spread * (i * 5 % steps) / steps;
    for (std::size_t next = i + 1; next < text.size(); ++next) {
      const auto gap = static_cast<int>(next - i) * pace.key;
      if (gap > hold) break;
      // No key is pressed twice before it is let go of.
      if (text[next] == text[i]) hold = gap * 9 / 10;
    }
    const auto isCapital = std::isupper(static_cast<unsigned char>(text[i])) != 0;
    if (isCapital) events.push_back({time, KEY_LEFTSHIFT, true});
    events.push_back({time, keyOfCharacter(text[i]), true});
    if (isCapital) events.push_back({time, KEY_LEFTSHIFT, false});
    events.push_back({time + hold, keyOfCharacter(text[i]), false});
  }
  std::ranges::stable_sort(events, {}, &Event::time);
  return events;
}

/// What KWin takes for a keyboard of its own.
class FakeKeyboard : public wayland::KeyOutlet {
 public:
  explicit FakeKeyboard(wayland::Connection& connection)
      : input_(connection.bind<org_kde_kwin_fake_input>(org_kde_kwin_fake_input_interface, 4),
               org_kde_kwin_fake_input_destroy) {
    org_kde_kwin_fake_input_authenticate(input_.get(), "hand", "test");
  }

  void key(std::uint16_t evdev, bool isDown) override {
    org_kde_kwin_fake_input_keyboard_key(input_.get(), evdev, isDown ? 1 : 0);
  }
  void modifiers(const wayland::Modifiers& /*modifiers*/) override {}
  bool setMap(const std::string& /*text*/) override { return false; }

 private:
  wayland::Owned<org_kde_kwin_fake_input> input_;
};

std::unique_ptr<wayland::KeyOutlet> keyboardOf(wayland::Connection& connection, wl_seat* seat) {
  if (connection.serverName() == "gnome-shell") return std::make_unique<RemoteKeyboard>();
  if (connection.offers(org_kde_kwin_fake_input_interface)) {
    return std::make_unique<FakeKeyboard>(connection);
  }
  return std::make_unique<wayland::VirtualKeyboard>(connection, seat);
}

}  // namespace

wayland::CompiledMap mapOf(const std::string& layouts, const std::string& options) {
  const std::unique_ptr<xkb_context, void (*)(xkb_context*)> context(
      xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref);
  const xkb_rule_names names{.rules = "evdev",
                             .model = "pc105",
                             .layout = layouts.c_str(),
                             .variant = "",
                             .options = options.c_str()};
  return {xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS),
          xkb_keymap_unref};
}

std::uint16_t keyOfCharacter(char character) {
  constexpr std::string_view rows[] = {"1234567890-=", "qwertyuiop[]", "asdfghjkl;'`",
                                       "zxcvbnm,./"};
  constexpr std::uint16_t first[] = {KEY_1, KEY_Q, KEY_A, KEY_Z};
  const auto small = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
  for (std::size_t row = 0; row < std::size(rows); ++row) {
    const auto column = rows[row].find(small);
    if (column != std::string_view::npos) return static_cast<std::uint16_t>(first[row] + column);
  }
  if (character == ' ') return KEY_SPACE;
  if (character == '\n') return KEY_ENTER;
  throw std::out_of_range(std::string("no key for ") + character);
}

Hand::Hand(const wayland::CompiledMap& map)
    : seat_(connection_.bind<wl_seat>(wl_seat_interface), wl_seat_destroy),
      keyboard_(keyboardOf(connection_, seat_.get())),
      state_(map) {
  const std::unique_ptr<char, void (*)(void*)> text(
      xkb_keymap_get_as_string(map.get(), XKB_KEYMAP_FORMAT_TEXT_V1), std::free);
  keyboard_->setMap(text.get());
  keyboard_->modifiers({});
  connection_.roundtrip();
}

void Hand::key(std::uint16_t evdev, bool isDown) {
  const auto before = state_.modifiers();
  keyboard_->key(evdev, isDown);
  state_.key(evdev, isDown);
  if (const auto now = state_.modifiers(); now != before) keyboard_->modifiers(now);
  connection_.flush();
}

void Hand::tap(std::uint16_t evdev) {
  press(evdev);
  release(evdev);
}

void Hand::type(std::string_view text, const Pace& pace) {
  const auto begin = Clock::now();
  for (const auto& [time, evdev, isDown] : eventsOf(text, pace)) {
    std::this_thread::sleep_until(begin + time);
    key(evdev, isDown);
  }
}

void Hand::selectGroup(std::uint32_t group) {
  auto modifiers = state_.modifiers();
  modifiers.group = group;
  state_.set(modifiers);
  keyboard_->modifiers(modifiers);
  connection_.roundtrip();
}

}  // namespace kivra::e2e
