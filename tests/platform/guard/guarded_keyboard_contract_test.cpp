// The program's side and the guard, joined by their socket, between hands and a screen.

#include "platform/guard/guarded_keyboard.h"

#include <poll.h>

#include "platform/embedded/embedded_desktop.h"
#include "platform/guard/fake_seat.h"
#include "platform/guard/lent_guards.h"
#include "platform/guard/process/keyboard_guard.h"
#include "platform/input_sources_contract.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::guard {
namespace {

/// `tellsGroup`: the display tells at any time which group is in effect.
template <bool tellsGroup>
class GuardedDesktop {
 public:
  EventTaps& taps() { return keyboard_.eventTaps; }
  EventPosting& posting() { return keyboard_.eventPosting; }
  InputSources& sources() { return keyboard_.inputSources; }

  void press(std::uint16_t keyCode) { hand({.evdev = evdevCode(keyCode).value()}); }
  void release(std::uint16_t keyCode) {
    hand({.evdev = evdevCode(keyCode).value(), .isDown = false});
  }
  void click() {
    tell([](SeatListener& listener) { listener.button(false); });
  }
  void pressUnanswered(std::uint16_t keyCode) {
    press(keyCode);
    now_ += KeyboardGuard::decisionTime;
    guard_->serve(now_);
  }
  void choose(std::size_t index) { screen_.selectGroup(static_cast<std::uint32_t>(index)); }
  void settle() {
    if (!guard_) meetGuard();
    do {
      guard_->serve(now_);
      if (isReadable(programFd_)) (*onReadable_.lock())();
      desktop_.time.serve();
    } while (isReadable(lent_->channel.fd()) || isReadable(programFd_));
  }
  std::string text() { return screen_.text(); }

 private:
  struct ScreenLayouts : DisplayLayouts {
    explicit ScreenLayouts(const Screen& shown) : screen(shown) {}
    bool isConnected() const override { return true; }
    xkb_keymap* newKeymap() override { return Layouts::newKeymap(); }
    std::optional<std::uint32_t> group() override {
      return tellsGroup ? std::optional(screen.group()) : std::nullopt;
    }
    const Screen& screen;
  };

  void meetGuard() {
    lent_ = guards_.next();
    lent_->channel.sendHello();
    guard_.emplace(seat_, lent_->channel);
  }
  void hand(const SeatKey& key) {
    tell([key](SeatListener& listener) { listener.key(key); });
  }
  void tell(std::function<void(SeatListener&)> event) {
    seat_.add(std::move(event));
    guard_->serve(now_);
  }
  static bool isReadable(int fd) {
    pollfd asked{.fd = fd, .events = POLLIN, .revents = 0};
    return ::poll(&asked, 1, 0) == 1;
  }
  std::shared_ptr<void> watch(int fd, std::function<void()> onReadable) {
    auto kept = std::make_shared<std::function<void()>>(std::move(onReadable));
    onReadable_ = kept;
    programFd_ = fd;
    return kept;
  }

  KeyboardSession::Environment environment() {
    return {.runLoop = desktop_.time,
            .log = desktop_.session,
            .watchFd = [this](int fd, auto called) { return watch(fd, std::move(called)); },
            .guardProgram = KIVRA_LENDING_GUARD,
            .isPasswordFocused = [] { return false; },
            .activeWindowChanged = [] {},
            .hasSelectionBehind = [](std::size_t) { return false; },
            .lastCaretMove = {},
            .open = [](std::string_view) {},
            .groupSelected = [](std::uint32_t) {},
            .isTakenByOwnWindow = [](const Event&) { return false; },
            .connectionLost = [] {}};
  }

  embedded::EmbeddedDesktop desktop_{nullptr, nullptr};
  LentGuards guards_;
  Screen screen_{Layouts::plain()};
  FakeSeat seat_{screen_};
  ScreenLayouts layouts_{screen_};
  std::weak_ptr<std::function<void()>> onReadable_;
  int programFd_ = -1;
  GuardedKeyboard keyboard_{environment(), layouts_, desktop_.session};
  std::unique_ptr<LentGuards::Guard> lent_;
  std::optional<KeyboardGuard> guard_;
  KeyboardGuard::Clock::time_point now_{std::chrono::hours(1)};
};

using Displays = testing::Types<GuardedDesktop<true>, GuardedDesktop<false>>;
INSTANTIATE_TYPED_TEST_SUITE_P(Guard, EventTapsContract, GuardedDesktop<true>);
INSTANTIATE_TYPED_TEST_SUITE_P(Guard, InputSourcesContract, Displays);

}  // namespace
}  // namespace kivra::guard
