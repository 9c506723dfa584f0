#include "platform/qt/qt_local_key_monitors.h"

#include <QCoreApplication>
#include <QKeyEvent>
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

/// Also what stands for Fn, and the keys that choose a layout, which Qt has no number for.
bool isModifierKey(int key) {
  if (key == Qt::Key_Menu || key == Qt::Key_unknown) return true;
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

/// Sees every key event where it enters a window, before shortcuts and controls do.
class QtLocalKeyMonitors::Filter : public QObject {
 public:
  explicit Filter(QtLocalKeyMonitors& monitors) : monitors_(monitors) {
    QCoreApplication::instance()->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::KeyPress || !watched->isWindowType()) return false;
    return !monitors_.arrives(static_cast<const QKeyEvent&>(*event));
  }

 private:
  QtLocalKeyMonitors& monitors_;
};

QtLocalKeyMonitors::QtLocalKeyMonitors(std::function<bool()> areKeysReported)
    : areKeysReported_(std::move(areKeysReported)), filter_(std::make_unique<Filter>(*this)) {}

QtLocalKeyMonitors::~QtLocalKeyMonitors() = default;

bool QtLocalKeyMonitors::take(const Event& event) {
  const auto isKey = event.type == EventType::keyDown || event.type == EventType::flagsChanged;
  if (!isMonitoring() || !isKey) return false;
  if (event.type == EventType::keyDown) ++awaited_[event.keyCode];
  pass(event);
  return true;
}

/// Whether the press goes on to the window.
bool QtLocalKeyMonitors::arrives(const QKeyEvent& event) {
  const auto down = keyDown(event);
  if (!isMonitoring()) return !down || !isLateArrival(down->keyCode);
  // A key without a code of its own is no hotkey, and none of the controls' business either.
  if (!down) return false;
  if (!areKeysReported_()) return pass(*down);
  --awaited_[down->keyCode];
  return false;
}

/// The last press that was taken may end the monitoring before it arrives.
bool QtLocalKeyMonitors::isLateArrival(std::uint16_t key) {
  const auto awaited = awaited_.find(key);
  const auto isLate = awaited != awaited_.end() && awaited->second > 0;
  awaited_.clear();
  return isLate;
}

std::shared_ptr<LocalKeyMonitor> QtLocalKeyMonitors::addLocalMonitor(
    std::uint64_t mask, std::function<EventVerdict(const Event&)> handler) {
  if (!isMonitoring()) awaited_.clear();
  return MonitorList::addLocalMonitor(mask, std::move(handler));
}

}  // namespace kivra::qt
