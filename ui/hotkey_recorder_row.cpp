#include "ui/hotkey_recorder_row.h"

#include <utility>

#include "support/weakly.h"

namespace kivra {

namespace {
constexpr std::uint64_t keyDownMask = 1ULL << static_cast<std::uint32_t>(EventType::keyDown);
}

HotkeyRecorderRow::HotkeyRecorderRow(std::string title, std::function<Binding<Hotkey>()> hotkey,
                                     Environment environment)
    : title_(std::move(title)), hotkey_(std::move(hotkey)), env_(std::move(environment)) {}

HotkeyRecorderRow::~HotkeyRecorderRow() {
  if (monitor_) env_.monitors.removeMonitor(monitor_);
}

View HotkeyRecorderRow::body() {
  const auto hotkey = hotkey_().value;
  auto label = recording_ ? "Нажми комбинацию… (" + env_.terms.term(Term::escapeKey) + " отмена)"
                          : displayText(hotkey, env_.englishCharacter, env_.terms);
  auto button = views::button(
      std::move(label),
      weakly(weak_from_this(), [](HotkeyRecorderRow& self) { self.toggleRecording(); }));
  button.accessibilityName = title_;
  button.help = env_.conflicts->hint(title_, hotkey);
  return views::labeledRow(title_, std::move(button));
}

void HotkeyRecorderRow::toggleRecording() {
  if (recording_) {
    stopRecording();
  } else {
    startRecording();
  }
}

void HotkeyRecorderRow::startRecording() {
  willChange();
  recording_ = true;
  monitor_ =
      env_.monitors.addLocalMonitor(keyDownMask, [weak = weak_from_this()](const Event& event) {
        const auto self = weak.lock();
        return self ? self->handle(event) : EventVerdict::pass;
      });
}

EventVerdict HotkeyRecorderRow::handle(const Event& event) {
  const auto modifiers = event.flags & hotkeyModifiers;
  if (modifiers != 0) {
    const Hotkey hotkey{event.keyCode, modifiers};
    hotkey_().assign(hotkey);
    env_.conflicts->recorded(title_, hotkey);
    stopRecording();
  } else if (event.keyCode == key_codes::escape) {
    stopRecording();
  }
  return EventVerdict::drop;
}

void HotkeyRecorderRow::stopRecording() {
  willChange();
  recording_ = false;
  if (monitor_) env_.monitors.removeMonitor(std::exchange(monitor_, nullptr));
}

}  // namespace kivra
