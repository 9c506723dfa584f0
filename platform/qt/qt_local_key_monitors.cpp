#include "platform/qt/qt_local_key_monitors.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <algorithm>
#include <optional>
#include <utility>

#include "platform/xkb/virtual_keys.h"

namespace kivra::qt {

namespace {

std::uint64_t flagsOf(Qt::KeyboardModifiers modifiers) {
  std::uint64_t flags = 0;
  if (modifiers.testFlag(Qt::ShiftModifier)) flags |= event_flags::shift;
  if (modifiers.testFlag(Qt::ControlModifier)) flags |= event_flags::control;
  if (modifiers.testFlag(Qt::AltModifier)) flags |= event_flags::option;
  if (modifiers.testFlag(Qt::MetaModifier)) flags |= event_flags::command;
  return flags;
}

bool isModifierKey(int key) {
  return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_Super_L ||
         key == Qt::Key_Super_R || key == Qt::Key_Hyper_L || key == Qt::Key_Hyper_R ||
         key == Qt::Key_AltGr;
}

/// The key-down event that Qt's event stands for; none for modifiers and for keys that no virtual
/// key stands for.
std::optional<Event> keyDown(const QKeyEvent& event) {
  const auto code = event.nativeScanCode();
  if (isModifierKey(event.key()) || code < xkbOffset) return std::nullopt;
  const auto key = virtualKey(static_cast<std::uint16_t>(code - xkbOffset));
  if (!key) return std::nullopt;
  return Event{.type = EventType::keyDown, .keyCode = *key, .flags = flagsOf(event.modifiers())};
}

}  // namespace

struct QtLocalKeyMonitors::Monitor : LocalKeyMonitor {
  Monitor(std::uint64_t eventMask, std::function<EventVerdict(const Event&)> eventHandler)
      : mask(eventMask), handler(std::move(eventHandler)) {}

  std::uint64_t mask;
  std::function<EventVerdict(const Event&)> handler;
};

/// Sees every key event where it enters a window, before shortcuts and controls do.
class QtLocalKeyMonitors::Filter : public QObject {
 public:
  explicit Filter(QtLocalKeyMonitors& monitors) : monitors_(monitors) {
    QCoreApplication::instance()->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (monitors_.monitors_.empty() || !watched->isWindowType()) return false;
    if (event->type() != QEvent::KeyPress) return false;
    const auto down = keyDown(static_cast<const QKeyEvent&>(*event));
    // A key without a code of its own is no hotkey, and none of the controls' business either.
    return !down || !monitors_.pass(*down);
  }

 private:
  QtLocalKeyMonitors& monitors_;
};

QtLocalKeyMonitors::QtLocalKeyMonitors() : filter_(std::make_unique<Filter>(*this)) {}

QtLocalKeyMonitors::~QtLocalKeyMonitors() = default;

bool QtLocalKeyMonitors::pass(const Event& event) const {
  const auto bit = 1ULL << static_cast<std::uint32_t>(event.type);
  const auto current = monitors_;  // a handler may remove its own monitor
  return std::ranges::none_of(current, [&](const auto& monitor) {
    return (monitor->mask & bit) != 0 && monitor->handler(event) == EventVerdict::drop;
  });
}

std::shared_ptr<LocalKeyMonitor> QtLocalKeyMonitors::addLocalMonitor(
    std::uint64_t mask, std::function<EventVerdict(const Event&)> handler) {
  auto monitor = std::make_shared<Monitor>(mask, std::move(handler));
  monitors_.push_back(monitor);
  return monitor;
}

void QtLocalKeyMonitors::removeMonitor(const std::shared_ptr<LocalKeyMonitor>& monitor) {
  std::erase(monitors_, monitor);
}

}  // namespace kivra::qt
