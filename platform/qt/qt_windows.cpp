#include "platform/qt/qt_windows.h"

#include <malloc.h>

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>
#include <optional>
#include <utility>

#include "platform/qt/accessible_role.h"
#include "platform/qt/drawn_view.h"

namespace kivra::qt {

namespace {

/// The widget of a window: closing it hides it and tells.
class WindowWidget : public QWidget {
 public:
  explicit WindowWidget(Qt::WindowFlags flags) : QWidget(nullptr, flags) {
    setAccessibleRole(*this, QAccessible::Border);  // a frame, as screen readers call windows
  }

  std::function<void()> closeHandler;

 protected:
  /// A key held down since it did something else closes nothing.
  void keyPressEvent(QKeyEvent* event) override {
    const auto closes = event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close);
    if (closes && !event->isAutoRepeat()) {
      close();
    } else {
      QWidget::keyPressEvent(event);
    }
  }

  void closeEvent(QCloseEvent* event) override {
    event->accept();
    const auto handler = closeHandler;
    if (handler) handler();
    QTimer::singleShot(0, this, [this] { giveBackMemory(); });
  }

 private:
  /// A closed window needs no picture of itself; what it holds is kept for the next time.
  void giveBackMemory() {
    if (isVisible()) return;
    destroy();
    // What the lists and texts of the window took lies in pieces that nothing needs for long.
    malloc_trim(0);
  }
};

Qt::WindowFlags windowFlags(const WindowAttributes& attributes) {
  if (attributes.styleMask == window_styles::borderless) {
    // Such a window is seen only as a panel above all others.
    return Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
  }
  return Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
         Qt::WindowCloseButtonHint;
}

class QtWindow : public Window {
 public:
  QtWindow(const WindowAttributes& attributes, ActivateWindow activate)
      : activate_(std::move(activate)),
        widget_(windowFlags(attributes)),
        alpha_(attributes.alphaValue) {
    widget_.setObjectName(QString::fromStdString(attributes.name));
    widget_.setWindowTitle(QString::fromStdString(attributes.title));
    widget_.setAttribute(Qt::WA_QuitOnClose, false);
    if (!attributes.isOpaque) widget_.setAttribute(Qt::WA_TranslucentBackground);
    if (attributes.ignoresMouseEvents) widget_.setAttribute(Qt::WA_TransparentForMouseEvents);
    layout_ = new QVBoxLayout(&widget_);
    layout_->setContentsMargins(0, 0, 0, 0);
    if (attributes.contentSize) {
      widget_.setFixedSize(attributes.contentSize->width, attributes.contentSize->height);
    } else {
      layout_->setSizeConstraint(QLayout::SetFixedSize);
    }
  }

  void setContent(View content) override {
    if (drawn_ && kind_ == content.kind) {
      drawn_->update(content);
      return;
    }
    if (drawn_) drawn_->widget()->deleteLater();
    kind_ = content.kind;
    drawn_ = drawView(content, Surroundings::window);
    layout_->addWidget(drawn_->widget());
  }

  void setContentSize(WindowSize size) override { widget_.setFixedSize(size.width, size.height); }

  void center() override {
    widget_.adjustSize();
    const auto* const screen = widget_.screen();
    if (screen == nullptr) return;
    auto frame = widget_.frameGeometry();
    frame.moveCenter(screen->availableGeometry().center());
    widget_.move(frame.topLeft());
  }

  void setAlphaValue(double alpha) override {
    alpha_ = alpha;
    if (alpha_ > 0) {
      widget_.setWindowOpacity(alpha_);
    } else {
      widget_.hide();
    }
  }

  void setLevel(int /*level*/) override {}  // a borderless window is above the others anyway

  void makeKeyAndOrderFront() override {
    if (alpha_ <= 0) return;
    if (place_) widget_.restoreGeometry(std::exchange(place_, std::nullopt).value());
    bringToFront(widget_, activate_);
  }

  void orderBack() override {
    if (alpha_ > 0) widget_.lower();
  }

  void close() override {
    if (!widget_.isVisible()) return;
    widget_.close();
  }

  void setCloseHandler(std::function<void()> handler) override {
    widget_.closeHandler = [this, handler = std::move(handler)] {
      place_ = widget_.saveGeometry();
      handler();
    };
  }

 private:
  ActivateWindow activate_;
  std::unique_ptr<DrawnView> drawn_;  // outlives the widgets, which may still call it
  WindowWidget widget_;
  QVBoxLayout* layout_ = nullptr;
  double alpha_;
  std::optional<QByteArray> place_;  ///< of a closed window
  ViewKind kind_ = ViewKind::empty;
};

}  // namespace

std::unique_ptr<Window> QtWindows::windowCreate(const WindowAttributes& attributes) {
  return std::make_unique<QtWindow>(attributes, activate_);
}

}  // namespace kivra::qt
