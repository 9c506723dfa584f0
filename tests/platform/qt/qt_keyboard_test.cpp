// The windows without a mouse, and as screen readers see them.

#include <QAccessible>

#include "qt_windows_fixture.h"

namespace kivra::qt {
namespace {

class QtKeyboardTest : public QtWindowsTest {
 protected:
  void openEntries(const std::vector<std::string>& patterns) {
    launch();
    std::vector<ReplacementStore::Entry> entries;
    entries.reserve(patterns.size());
    for (const auto& pattern : patterns) entries.push_back({Uuid::random(), pattern, "x"});
    app_->services.replacements().setEntries(entries);
    openSettings(2);
    window("settings")->activateWindow();
    rowsArea()->setFocus();
    turn();
  }

  void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString& text = "") {
    auto* const focused = window("settings")->focusWidget();
    ASSERT_NE(focused, nullptr);
    QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
    QCoreApplication::sendEvent(focused, &event);
    turn();
  }

  std::string patterns() {
    std::string all;
    for (const auto& entry : app_->services.replacements().entries()) all += entry.pattern + " ";
    return all;
  }

  static std::string spoken(QWidget* widget) {
    const auto* const interface = QAccessible::queryAccessibleInterface(widget);
    return interface->text(QAccessible::Name).toStdString();
  }
};

TEST_F(QtKeyboardTest, DeleteRemovesTheChosenRowAndUndoTakesItBack) {
  openEntries({"аист", "бор", "вол"});
  key(Qt::Key_Down);
  key(Qt::Key_Delete);
  EXPECT_EQ(patterns(), "аист вол ");
  key(Qt::Key_Delete);
  EXPECT_EQ(patterns(), "аист ");
  key(Qt::Key_Delete);
  EXPECT_EQ(patterns(), "");
  for (const auto* expected : {"аист ", "аист вол ", "аист бор вол ", "аист бор вол "}) {
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(patterns(), expected);
  }
  QTest::mouseClick(named<QAbstractButton>("Удалить «бор»"), Qt::LeftButton);
  turn();
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(patterns(), "аист бор вол ");
}

TEST_F(QtKeyboardTest, WhatWasEnteredAnewIsNotTakenBackBesideIt) {
  openEntries({"аист", "бор"});
  key(Qt::Key_Delete);
  app_->services.replacements().add("Аист", "y");
  turn();
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(patterns(), "бор Аист ");
}

TEST_F(QtKeyboardTest, LettersChooseTheFirstRowThatBeginsWithThem) {
  constexpr int count = 300;
  std::vector<std::string> many;
  many.reserve(count + 1);
  for (int i = 0; i < count; ++i) many.push_back("слово" + std::to_string(1000 + i));
  many.emplace_back("Яблоко");
  openEntries(many);
  const auto top = rowsArea()->verticalScrollBar()->value();
  for (const auto* letter : {"я", "б"}) key(0, Qt::NoModifier, letter);
  EXPECT_GT(rowsArea()->verticalScrollBar()->value(), top);
  key(Qt::Key_Delete);
  EXPECT_EQ(patterns().find("Яблоко"), std::string::npos);
  EXPECT_EQ(app_->services.replacements().entries().size(), 300U);
}

TEST_F(QtKeyboardTest, ControlTabGoesRoundFromAnyControl) {
  openSettings(0);
  for (const auto tab : {0, 1, 2, 3}) {
    for (auto* const control : tabs()->widget(tab)->findChildren<QWidget*>()) {
      tabs()->setCurrentIndex(tab);
      if (!(control->focusPolicy() & Qt::TabFocus) || !control->isVisible()) continue;
      control->setFocus();
      if (!control->hasFocus()) continue;
      key(Qt::Key_Tab, Qt::ControlModifier);
      EXPECT_EQ(tabs()->currentIndex(), (tab + 1) % 4) << control->accessibleName().toStdString();
      key(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
      EXPECT_EQ(tabs()->currentIndex(), tab) << control->accessibleName().toStdString();
    }
  }
}

TEST_F(QtKeyboardTest, EscapeAndControlWClose) {
  openSettings(2);
  for (const auto modifiers :
       {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::ControlModifier)}) {
    app_->services.showSettingsWindow();
    turn();
    named<QLineEdit>("На что заменить (например VEXOR)")->setFocus();
    key(modifiers == Qt::NoModifier ? Qt::Key_Escape : Qt::Key_W, modifiers);
    EXPECT_FALSE(window("settings")->isVisible());
  }
}

TEST_F(QtKeyboardTest, AClickOnTheTextFlipsTheSwitch) {
  openSettings(0);
  const auto wasOn = settings().autoSwitchEnabled();
  for (auto* const label : window("settings")->findChildren<QLabel*>()) {
    if (label->text() == "Исправлять слова не в той раскладке") {
      QTest::mouseClick(label->window()->windowHandle(), Qt::LeftButton, {},
                        label->mapTo(label->window(), label->rect().center()));
    }
  }
  turn();
  EXPECT_EQ(settings().autoSwitchEnabled(), !wasOn);
}

TEST_F(QtKeyboardTest, SectionsGroupAndListsHaveRows) {
  openEntries({"аист", "бор"});
  const auto roleOf = [](QWidget* widget) {
    return QAccessible::queryAccessibleInterface(widget)->role();
  };
  EXPECT_EQ(roleOf(window("settings")), QAccessible::Border);
  auto* const list = rowsArea()->viewport();
  EXPECT_EQ(roleOf(list), QAccessible::List);
  EXPECT_EQ(spoken(list), "Записи (2)");
  std::vector<std::string> rows;
  for (auto* const row : list->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
    if (row->isVisible() && roleOf(row) == QAccessible::ListItem) rows.push_back(spoken(row));
  }
  EXPECT_EQ(rows, (std::vector<std::string>{"аист", "бор"}));
  const auto groups = tabs()->currentWidget()->findChildren<QWidget*>();
  EXPECT_TRUE(std::ranges::any_of(groups, [&](QWidget* widget) {
    return roleOf(widget) == QAccessible::Grouping && spoken(widget) == "Новая запись";
  }));
}

TEST_F(QtKeyboardTest, ScreenRemarksHoldNoMarkup) {
  openEntries({"a<b"});
  for (auto* const widget : window("settings")->findChildren<QWidget*>()) {
    const auto* const interface = QAccessible::queryAccessibleInterface(widget);
    EXPECT_FALSE(interface->text(QAccessible::Description).contains("<span>")) << spoken(widget);
  }
}

TEST_F(QtKeyboardTest, WhatStandsInAnEmptyFieldIsFainterThanText) {
  const auto before = QApplication::palette();
  QPalette harsh(before);
  harsh.setColor(QPalette::PlaceholderText, harsh.color(QPalette::Text));
  openSettings(2);
  QApplication::setPalette(harsh);
  turn();
  const auto colors = named<QLineEdit>("На что заменить (например VEXOR)")->palette();
  EXPECT_NE(colors.color(QPalette::PlaceholderText), colors.color(QPalette::Text));
  QApplication::setPalette(before);
}

}  // namespace
}  // namespace kivra::qt
