#include "platform/qt/drawn_controls.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QSignalBlocker>
#include <QToolButton>
#include <QValidator>
#include <QWheelEvent>
#include <utility>

#include "platform/qt/shown_text.h"
#include "platform/qt/switch_widget.h"
#include "platform/qt/symbol.h"
#include "platform/qt/view_style.h"
#include "platform/qt/wrapping_label.h"

namespace kivra::qt {

namespace {

QString shown(const std::string& text) { return QString::fromStdString(text); }

View titleOf(const View& view) {
  View title;
  title.text = view.text;
  return title;
}

/// A title with a control at the trailing end.
QWidget* titledRow(WrappingLabel* title, QWidget* control, QWidget* widget = new QWidget) {
  auto* const row = new QHBoxLayout(widget);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(title, 1);
  row->addWidget(control);
  title->setBuddy(control);
  return widget;
}

/// A click beside the switch flips it too.
class ToggleRow : public QWidget {
 public:
  explicit ToggleRow(SwitchWidget& toggle) : switch_(toggle) {}

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    event->setAccepted(event->button() == Qt::LeftButton);
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton && rect().contains(event->pos())) switch_.click();
  }

 private:
  SwitchWidget& switch_;
};

class DrawnToggle : public DrawnView {
 public:
  DrawnToggle() {
    // Not only clicks: a screen reader flips the switch by itself.
    QObject::connect(switch_, &QAbstractButton::toggled, switch_, [this](bool isOn) {
      const auto assign = assign_;
      assign(isOn);
    });
  }

  QWidget* widget() const override { return widget_; }
  void update(const View& view) override {
    assign_ = view.assign;
    title_->setView(titleOf(view));
    switch_->setAccessibleName(shown(view.text));
    switch_->setEnabled(view.isEnabled);
    const QSignalBlocker blocker(switch_);
    switch_->setChecked(std::get<bool>(view.value));
  }

 private:
  WrappingLabel* title_ = new WrappingLabel;
  SwitchWidget* switch_ = new SwitchWidget;
  QWidget* widget_ = titledRow(title_, switch_, new ToggleRow(*switch_));
  std::function<void(const ViewValue&)> assign_;
};

/// Turning the wheel over a list of options that is being scrolled past must not choose one.
class PickerBox : public QComboBox {
 public:
  PickerBox() { setFocusPolicy(Qt::StrongFocus); }

 protected:
  void wheelEvent(QWheelEvent* event) override {
    if (hasFocus()) {
      QComboBox::wheelEvent(event);
    } else {
      event->ignore();
    }
  }
};

class DrawnPicker : public DrawnView {
 public:
  DrawnPicker() {
    QObject::connect(box_, &QComboBox::activated, box_, [this](int index) {
      const auto assign = assign_;
      assign(static_cast<std::size_t>(index));
    });
  }

  QWidget* widget() const override { return widget_; }
  void update(const View& view) override {
    assign_ = view.assign;
    title_->setView(titleOf(view));
    if (options_ != view.options) {
      options_ = view.options;
      box_->clear();
      for (const auto& option : options_) box_->addItem(shown(option));
    }
    const auto* const index = std::get_if<std::size_t>(&view.value);
    box_->setCurrentIndex(index == nullptr ? -1 : static_cast<int>(*index));
    box_->setAccessibleName(shown(view.text));
    box_->setEnabled(view.isEnabled);
  }

 private:
  WrappingLabel* title_ = new WrappingLabel;
  PickerBox* box_ = new PickerBox;
  QWidget* widget_ = titledRow(title_, box_);
  std::vector<std::string> options_;
  std::function<void(const ViewValue&)> assign_;
};

/// A field of one line takes what is pasted as one line.
class OneLine : public QValidator {
 public:
  using QValidator::QValidator;

  State validate(QString& input, int& position) const override {
    const auto afterCursor = withoutLineBreaks(input.mid(position)).size();
    input = withoutLineBreaks(input);
    position = static_cast<int>(std::max(qsizetype{0}, input.size() - afterCursor));
    return Acceptable;
  }
};

/// A line to write in. Some styles draw what stands in an empty one like what was typed.
class FieldEdit : public QLineEdit {
 public:
  FieldEdit() { dimPlaceholder(); }

 protected:
  void changeEvent(QEvent* event) override {
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) dimPlaceholder();
  }

  /// With nothing of its own to take back the field leaves that to what surrounds it.
  void keyPressEvent(QKeyEvent* event) override {
    if (event->matches(QKeySequence::Undo) && !isUndoAvailable()) {
      event->ignore();
    } else {
      QLineEdit::keyPressEvent(event);
    }
  }

 private:
  void dimPlaceholder() {
    auto colors = palette();
    const auto dimmed = placeholderColor(colors);
    if (colors.color(QPalette::PlaceholderText) == dimmed) return;
    colors.setColor(QPalette::PlaceholderText, dimmed);
    setPalette(colors);
  }
};

class DrawnField : public DrawnView {
 public:
  explicit DrawnField(bool isSecure) {
    edit_->setValidator(new OneLine(edit_));
    if (isSecure) edit_->setEchoMode(QLineEdit::Password);
    // Not only what is typed: assistive programs set the text.
    QObject::connect(edit_, &QLineEdit::textChanged, edit_, [this](const QString& text) {
      const auto assign = assign_;
      assign(text.toStdString());
    });
  }

  QWidget* widget() const override { return edit_; }
  void update(const View& view) override {
    assign_ = view.assign;
    edit_->setPlaceholderText(shown(view.placeholder));
    edit_->setAccessibleName(shown(view.placeholder));
    edit_->setEnabled(view.isEnabled);
    // Setting the text that is there already would move the cursor.
    const auto text = withoutLineBreaks(shown(std::get<std::string>(view.value)));
    const QSignalBlocker blocker(edit_);
    if (text != edit_->text()) edit_->setText(text);
  }

 private:
  QLineEdit* edit_ = new FieldEdit;
  std::function<void(const ViewValue&)> assign_;
};

class DrawnButton : public DrawnView {
 public:
  explicit DrawnButton(bool isBorderless)
      : button_(isBorderless ? borderless() : new QPushButton), widget_(leading(button_)) {
    QObject::connect(button_, &QAbstractButton::clicked, button_, [this] {
      const auto action = action_;
      action();
    });
  }

  QWidget* widget() const override { return widget_; }
  void update(const View& view) override {
    action_ = view.action;
    button_->setText(shown(view.text));
    button_->setIcon(symbolIcon(view.symbol));
    button_->setEnabled(view.isEnabled);
    const auto hasOwnName = !view.accessibilityName.empty();
    button_->setAccessibleName(shown(hasOwnName ? view.accessibilityName : view.text));
    const auto& tip = view.text.empty() ? view.accessibilityName : view.help;
    button_->setToolTip(tip.empty() ? QString() : toolTipText(tip));
    auto description = hasOwnName ? shown(view.text) : QString();
    if (!tip.empty()) description += (description.isEmpty() ? "" : ". ") + shownLine(tip);
    button_->setAccessibleDescription(description);
  }

 private:
  static QAbstractButton* borderless() {
    auto* const button = new QToolButton;
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
  }

  /// As wide as its title, at the leading end of its place.
  static QWidget* leading(QAbstractButton* button) {
    auto* const widget = new QWidget;
    widget->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(button, 0, Qt::AlignLeft);
    return widget;
  }

  QAbstractButton* button_;
  QWidget* widget_;
  std::function<void()> action_;
};

}  // namespace

std::unique_ptr<DrawnView> drawToggle() { return std::make_unique<DrawnToggle>(); }
std::unique_ptr<DrawnView> drawPicker() { return std::make_unique<DrawnPicker>(); }

std::unique_ptr<DrawnView> drawField(bool isSecure) {
  return std::make_unique<DrawnField>(isSecure);
}

std::unique_ptr<DrawnView> drawButton(const View& view) {
  return std::make_unique<DrawnButton>(hasStyle(view, ViewStyle::borderless));
}

}  // namespace kivra::qt
