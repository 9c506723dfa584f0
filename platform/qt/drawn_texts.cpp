#include "platform/qt/drawn_texts.h"

#include <QHBoxLayout>
#include <QProgressBar>

#include "platform/qt/drawn_children.h"
#include "platform/qt/elided_label.h"
#include "platform/qt/symbol_widget.h"
#include "platform/qt/wrapping_label.h"

namespace kivra::qt {

namespace {

template <class LabelWidget>
class DrawnText : public DrawnView {
 public:
  QWidget* widget() const override { return label_; }
  void update(const View& view) override { label_->setView(view); }

 private:
  LabelWidget* label_ = new LabelWidget;
};

class DrawnSymbol : public DrawnView {
 public:
  QWidget* widget() const override { return symbol_; }
  void update(const View& view) override { symbol_->setView(view); }

 private:
  SymbolWidget* symbol_ = new SymbolWidget;
};

class DrawnLabel : public DrawnView {
 public:
  DrawnLabel() {
    auto* const row = new QHBoxLayout(widget_);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(symbol_, 0, Qt::AlignTop);
    row->addWidget(text_, 1);
  }

  QWidget* widget() const override { return widget_; }
  void update(const View& view) override {
    symbol_->setView(view);
    text_->setView(view);
  }

 private:
  QWidget* widget_ = new QWidget;
  SymbolWidget* symbol_ = new SymbolWidget;
  WrappingLabel* text_ = new WrappingLabel;
};

class DrawnLabeledRow : public DrawnView {
 public:
  DrawnLabeledRow() {
    auto* const row = new QHBoxLayout(widget_);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(title_, 1);
    row->addWidget(value_);
    row->addLayout(trailing_);
    value_->setTextInteractionFlags(Qt::NoTextInteraction);
  }

  QWidget* widget() const override { return widget_; }
  void update(const View& view) override {
    View title;
    title.text = view.text;
    title_->setView(title);
    const auto* const text = std::get_if<std::string>(&view.value);
    value_->setVisible(text != nullptr);
    View value;
    if (text != nullptr) value.text = *text;
    value.style = {ViewStyle::secondary};
    value_->setView(value);
    children_.update(view.children);
  }

 private:
  QWidget* widget_ = new QWidget;
  WrappingLabel* title_ = new WrappingLabel;
  WrappingLabel* value_ = new WrappingLabel;
  QHBoxLayout* trailing_ = new QHBoxLayout;
  DrawnChildren children_{*trailing_, Surroundings::window};
};

class DrawnProgress : public DrawnView {
 public:
  DrawnProgress() { bar_->setRange(0, 0); }

  QWidget* widget() const override { return bar_; }
  void update(const View& /*view*/) override {}

 private:
  QProgressBar* bar_ = new QProgressBar;
};

class DrawnNothing : public DrawnView {
 public:
  explicit DrawnNothing(bool expands) {
    widget_->setSizePolicy(expands ? QSizePolicy::Expanding : QSizePolicy::Preferred,
                           QSizePolicy::Preferred);
  }

  QWidget* widget() const override { return widget_; }
  void update(const View& /*view*/) override {}

 private:
  QWidget* widget_ = new QWidget;
};

}  // namespace

std::unique_ptr<DrawnView> drawText(Surroundings surroundings) {
  if (surroundings == Surroundings::listRow) return std::make_unique<DrawnText<ElidedLabel>>();
  return std::make_unique<DrawnText<WrappingLabel>>();
}

std::unique_ptr<DrawnView> drawLabel() { return std::make_unique<DrawnLabel>(); }
std::unique_ptr<DrawnView> drawSymbolNode() { return std::make_unique<DrawnSymbol>(); }
std::unique_ptr<DrawnView> drawLabeledRow() { return std::make_unique<DrawnLabeledRow>(); }
std::unique_ptr<DrawnView> drawProgress() { return std::make_unique<DrawnProgress>(); }

std::unique_ptr<DrawnView> drawNothing(bool expands) {
  return std::make_unique<DrawnNothing>(expands);
}

}  // namespace kivra::qt
