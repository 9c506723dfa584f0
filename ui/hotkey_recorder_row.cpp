#include "ui/hotkey_recorder_row.h"

#include <utility>

#include "support/weakly.h"

namespace kivra {

namespace {
constexpr std::uint64_t keyDownMask = 1ULL << static_cast<std::uint32_t>(EventType::keyDown);
}

HotkeyRecorderRow::HotkeyRecorderRow(std::string title, std::function<Binding<Hotkey>()> hotkey,
                                     LocalKeyMonitors& monitors, EnglishCharacter englishCharacter)
    : title_(std::move(title)),
      hotkey_(std::move(hotkey)),
      monitors_(monitors),
      englishCharacter_(std::move(englishCharacter)) {}

HotkeyRecorderRow::~HotkeyRecorderRow() {
  if (monitor_) monitors_.removeMonitor(monitor_);
}

View HotkeyRecorderRow::body() {
  auto label = recording_ ? std::string("Нажми комбинацию… (⎋ отмена)")
                          : displayText(hotkey_().value, englishCharacter_);
  auto button = views::button(
      std::move(label),
      weakly(weak_from_this(), [](HotkeyRecorderRow& self) { self.toggleRecording(); }));
  button.accessibilityName = title_;
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
  monitor_ = monitors_.addLocalMonitor(keyDownMask, [weak = weak_from_this()](const Event& event) {
    const auto self = weak.lock();
    return self ? self->handle(event) : EventVerdict::pass;
  });
}

EventVerdict HotkeyRecorderRow::handle(const Event& event) {
  const auto modifiers = event.flags & hotkeyModifiers;
  if (modifiers != 0) {
    hotkey_().assign(Hotkey{event.keyCode, modifiers});
    stopRecording();
  } else if (event.keyCode == key_codes::escape) {
    stopRecording();
  }
  return EventVerdict::drop;
}

void HotkeyRecorderRow::stopRecording() {
  willChange();
  recording_ = false;
  if (monitor_) monitors_.removeMonitor(std::exchange(monitor_, nullptr));
}

}  // namespace kivra
