#include "platform/qt/drawn_containers.h"

#include <QKeyEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "platform/qt/accessible_role.h"
#include "platform/qt/drawn_children.h"
#include "platform/qt/ground_widget.h"
#include "platform/qt/lined_rows.h"
#include "platform/qt/rows_area.h"
#include "platform/qt/symbol.h"
#include "platform/qt/view_style.h"
#include "platform/qt/wrapping_label.h"

namespace kivra::qt {

namespace {

constexpr int formMargin = 20;
constexpr int sectionSpacing = 18;
constexpr int mostOfIt = 1000;   // of the room goes to a list; the rest when the list is short
constexpr int cornerMargin = 6;  // keeps a scroll bar out of the rounded corners

QBoxLayout::Direction direction(const View& view) {
  return view.kind == ViewKind::hStack ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom;
}

class DrawnStack : public DrawnView {
 public:
  DrawnStack(const View& view, Surroundings surroundings)
      : widget_(hasStyle(view, ViewStyle::card) ? new GroundWidget : new QWidget),
        layout_(new QBoxLayout(direction(view), widget_)),
        children_(*layout_, surroundings) {}

  QWidget* widget() const override { return widget_; }

  void update(const View& view) override {
    layout_->setSpacing(view.spacing);
    layout_->setContentsMargins(view.padding, view.padding, view.padding, view.padding);
    children_.update(view.children);
    const auto hasSpacer = std::ranges::any_of(
        view.children, [](const View& child) { return child.kind == ViewKind::spacer; });
    for (std::size_t i = 0; i < view.children.size(); ++i) {
      placeChild(view, hasSpacer, static_cast<int>(i));
    }
  }

 private:
  /// Texts take the room along a row; in a stack of texts each takes the whole width.
  void placeChild(const View& view, bool hasSpacer, int index) {
    const auto& child = view.children[static_cast<std::size_t>(index)];
    auto* const widget = layout_->itemAt(index)->widget();
    if (view.kind == ViewKind::vStack) {
      const auto isRowOfButtons =
          child.kind == ViewKind::hStack && !hasStyle(child, ViewStyle::card) &&
          std::ranges::all_of(child.children,
                              [](const View& c) { return c.kind == ViewKind::button; });
      layout_->setAlignment(widget, isRowOfButtons ? Qt::AlignLeft : Qt::Alignment());
      return;
    }
    const auto isText = child.kind == ViewKind::text || child.kind == ViewKind::vStack;
    const auto expands = hasSpacer ? child.kind == ViewKind::spacer : isText;
    layout_->setStretchFactor(widget, expands ? 1 : 0);
    const auto across = view.alignment == ViewAlignment::top ? Qt::AlignTop : Qt::AlignVCenter;
    // A text that stretches fills its place, so that it knows how wide it may be.
    layout_->setAlignment(widget, isText && !hasSpacer ? Qt::Alignment() : across);
  }

  QWidget* widget_;
  QBoxLayout* layout_;
  DrawnChildren children_;
};

/// The area of a form.
struct FormArea : QScrollArea {
  std::function<void()> undo;
};

class DrawnForm : public DrawnView {
 public:
  DrawnForm() {
    area_->setWidgetResizable(true);
    area_->setFrameShape(QFrame::NoFrame);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->setFocusPolicy(Qt::NoFocus);
    area_->viewport()->setAutoFillBackground(false);
    area_->setWidget(content_);
    content_->setAutoFillBackground(false);
    sections_->setContentsMargins(0, 0, 0, 0);
    sections_->setSpacing(sectionSpacing);
    outer_->setContentsMargins(formMargin, formMargin, formMargin, formMargin);
    outer_->addLayout(sections_);
    outer_->addStretch(1);
  }

  QWidget* widget() const override { return area_; }

  void update(const View& view) override {
    area_->undo = view.undo;
    children_.update(view.children);
    // A long list takes the height that the other sections leave.
    auto hasList = false;
    for (std::size_t i = 0; i < view.children.size(); ++i) {
      const auto isList = view.children[i].rows != nullptr;
      sections_->setStretch(static_cast<int>(i), isList ? 1 : 0);
      hasList = hasList || isList;
    }
    outer_->setStretch(0, hasList ? 1 : 0);
    outer_->setStretch(1, hasList ? 0 : 1);
  }

 private:
  FormArea* area_ = new FormArea;
  QWidget* content_ = new QWidget;
  QVBoxLayout* outer_ = new QVBoxLayout(content_);
  QVBoxLayout* sections_ = new QVBoxLayout;
  DrawnChildren children_{*sections_, Surroundings::window};
};

class DrawnSection : public DrawnView {
 public:
  DrawnSection() {
    setAccessibleRole(*widget_, QAccessible::Grouping);
    auto* const layout = new QVBoxLayout(widget_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(header_);
    layout->addWidget(ground_, mostOfIt);
    layout->addStretch(1);
    auto* const ground = new QVBoxLayout(ground_);
    ground->setContentsMargins(0, 0, 0, 0);
    ground->setSpacing(0);
    ground->setSizeConstraint(QLayout::SetMaximumSize);  // no higher than its list
    ground->addWidget(few_);
    auto* const list = new QVBoxLayout(list_);
    list->setContentsMargins(1, cornerMargin, 1, cornerMargin);
    list->setSizeConstraint(QLayout::SetMinAndMaxSize);
    list->addWidget(many_);
    ground->addWidget(list_, 1);
    list_->hide();
  }

  QWidget* widget() const override { return widget_; }

  void update(const View& view) override {
    View header;
    header.text = view.text;
    header.style = {ViewStyle::headline};
    header_->setView(header);
    header_->setVisible(!view.text.empty());
    children_.update(view.children);
    few_->setVisible(!view.children.empty());
    many_->setRows(view.rows);
    list_->setVisible(view.rows != nullptr);
    many_->setAccessibleName(QString::fromStdString(view.text));
    many_->viewport()->setAccessibleName(QString::fromStdString(view.text));
    widget_->setAccessibleName(QString::fromStdString(view.text));
  }

 private:
  QWidget* widget_ = new QWidget;
  WrappingLabel* header_ = new WrappingLabel;
  GroundWidget* ground_ = new GroundWidget;
  LinedRows* few_ = new LinedRows;
  QWidget* list_ = new QWidget;
  RowsArea* many_ = new RowsArea;
  DrawnChildren children_{few_->rows(), Surroundings::window};
};

/// What the controls of a tab make nothing of is the tab's.
class TabsWidget : public QTabWidget {
 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const auto* const form = dynamic_cast<FormArea*>(currentWidget());
    if (form != nullptr && form->undo && event->matches(QKeySequence::Undo)) {
      const auto undo = form->undo;
      undo();
    } else {
      QTabWidget::keyPressEvent(event);
    }
  }
};

class DrawnTabs : public DrawnView {
 public:
  DrawnTabs() {
    tabs_->setDocumentMode(true);
    QObject::connect(tabs_, &QTabWidget::currentChanged, tabs_, [this](int index) {
      const auto assign = assign_;
      if (!isUpdating_ && assign) assign(static_cast<std::size_t>(index));
    });
  }

  QWidget* widget() const override { return tabs_; }

  void update(const View& view) override {
    isUpdating_ = true;
    assign_ = view.assign;
    for (std::size_t i = 0; i < view.children.size(); ++i) updateTab(i, view.children[i]);
    if (const auto* index = std::get_if<std::size_t>(&view.value)) {
      tabs_->setCurrentIndex(static_cast<int>(*index));
    }
    isUpdating_ = false;
  }

 private:
  /// The tabs are always the same ones, each with one node in it.
  void updateTab(std::size_t index, const View& tab) {
    const auto& content = tab.children.front();
    if (index < contents_.size()) {
      contents_[index]->update(content);
      return;
    }
    contents_.push_back(drawView(content, Surroundings::window));
    tabs_->addTab(contents_.back()->widget(), symbolIcon(tab.symbol),
                  QString::fromStdString(tab.text));
  }

  TabsWidget* tabs_ = new TabsWidget;
  std::vector<std::unique_ptr<DrawnView>> contents_;
  std::function<void(const ViewValue&)> assign_;
  bool isUpdating_ = false;
};

}  // namespace

std::unique_ptr<DrawnView> drawStack(const View& view, Surroundings surroundings) {
  return std::make_unique<DrawnStack>(view, surroundings);
}

std::unique_ptr<DrawnView> drawForm() { return std::make_unique<DrawnForm>(); }
std::unique_ptr<DrawnView> drawSection() { return std::make_unique<DrawnSection>(); }
std::unique_ptr<DrawnView> drawTabs() { return std::make_unique<DrawnTabs>(); }

}  // namespace kivra::qt
