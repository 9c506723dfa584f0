#include "platform/qt/foreground.h"

#include <QEvent>
#include <QWindow>
#include <utility>

namespace kivra::qt {

namespace {

/// Calls `activate` when the window first is on the screen. Belongs to the window.
class FirstExposure : public QObject {
 public:
  FirstExposure(QWindow& window, ActivateWindow activate)
      : QObject(&window), window_(window), activate_(std::move(activate)) {
    window.installEventFilter(this);
  }

  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Expose && window_.isExposed() && activate_) {
      std::exchange(activate_, {})(static_cast<std::uint32_t>(window_.winId()));
      deleteLater();
    }
    return false;
  }

 private:
  QWindow& window_;
  ActivateWindow activate_;
};

}  // namespace

void bringToFront(QWidget& window, const ActivateWindow& activate) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
  auto* const handle = window.windowHandle();
  if (!activate || handle == nullptr) return;
  if (handle->isExposed()) {
    activate(static_cast<std::uint32_t>(handle->winId()));
  } else {
    new FirstExposure(*handle, activate);
  }
}

}  // namespace kivra::qt
