// The real windows on the embedded desktop, drawn offscreen.

#include <gtest/gtest.h>

#include <QClipboard>
#include <QTextDocumentFragment>
#include <chrono>

#include "platform/qt/symbol.h"
#include "qt_windows_fixture.h"

namespace kivra::qt {
namespace {

constexpr auto patternField = "Что набрано (любая раскладка: мучщк или vexor)";
constexpr auto replacementField = "На что заменить (например VEXOR)";

TEST_F(QtWindowsTest, SwitchesAreBoundBothWays) {
  openSettings(0);
  auto* const enabled = named<SwitchWidget>("Включить Kivra");
  ASSERT_NE(enabled, nullptr);
  EXPECT_TRUE(enabled->isChecked());
  QTest::keyClick(enabled, Qt::Key_Space);
  EXPECT_FALSE(settings().isEnabled());
  settings().isEnabled.set(true);
  turn();
  EXPECT_TRUE(enabled->isChecked());
}

TEST_F(QtWindowsTest, PickersAreBoundBothWays) {
  openSettings(3);
  auto* const combination = named<QComboBox>("Перевод");
  ASSERT_NE(combination, nullptr);
  EXPECT_EQ(combination->currentText(), "⌃fn");
  QTest::keyClick(combination, Qt::Key_Up);
  EXPECT_EQ(settings().translateCombo(), ModifierCombo::off());
  settings().translateCombo.set({ComboModifier::fn});
  turn();
  EXPECT_EQ(combination->currentIndex(), -1);
}

TEST_F(QtWindowsTest, TypingKeepsTheFocusAndTheCursor) {
  openSettings(1);
  auto* const key = named<QLineEdit>("API-ключ (хранится в Keychain)");
  ASSERT_NE(key, nullptr);
  key->setFocus();
  for (const auto letter : {"a", "c", ":", "f", "x"}) {
    type(key, letter);
    turn();
  }
  EXPECT_TRUE(shows("Ключ Free-плана (api-free.deepl.com)."));
  key->setCursorPosition(1);
  type(key, "b");
  turn();
  type(key, "B");
  turn();
  EXPECT_TRUE(key->hasFocus());
  EXPECT_EQ(key->text(), "abBc:fx");
  EXPECT_EQ(key->cursorPosition(), 3);
  EXPECT_EQ(app_->services.text.keychain().read("deepl-api-key"), "abBc:fx");
}

TEST_F(QtWindowsTest, AKeyOfAnyLengthIsKeptWhole) {
  openSettings(1);
  auto* const key = named<QLineEdit>("API-ключ (хранится в Keychain)");
  key->insert(QString(10'000, 'k'));
  // As a paste does: the user edited the text.
  type(key, "!");
  turn();
  EXPECT_EQ(app_->services.text.keychain().read("deepl-api-key")->size(), 10'001U);
}

TEST_F(QtWindowsTest, RowsComeAndGo) {
  openSettings(1);
  constexpr auto warning =
      "Apple Intelligence недоступен на этой версии macOS — будет использован DeepL";
  auto* const picker = named<QComboBox>("Движок перевода");
  EXPECT_FALSE(shows(warning));
  settings().translationEngine.set(EngineKind::foundationModel);
  turn();
  EXPECT_TRUE(shows(warning));
  settings().translationEngine.set(EngineKind::deepL);
  turn();
  EXPECT_FALSE(shows(warning));
  EXPECT_EQ(named<QComboBox>("Движок перевода"), picker);
}

TEST_F(QtWindowsTest, EntriesAreAddedAndRemoved) {
  openSettings(2);
  auto* const add = named<QAbstractButton>("Добавить");
  ASSERT_NE(add, nullptr);
  EXPECT_FALSE(add->isEnabled());
  auto* const pattern = named<QLineEdit>(patternField);
  auto* const replacement = named<QLineEdit>(replacementField);
  type(pattern, "спс");
  type(replacement, "спасибо");
  QTest::keyClick(replacement, Qt::Key_Return);
  turn();
  EXPECT_EQ(replacement->text(), "спасибо");
  QTest::keyClick(add, Qt::Key_Space);
  turn();
  EXPECT_EQ(pattern->text(), "");
  EXPECT_FALSE(add->isEnabled());
  EXPECT_TRUE(shows("Записи (4)"));
  for (const auto* name :
       {"Удалить «ios»", "Удалить «vexor»", "Удалить «vexor energy»", "Удалить «спс»"}) {
    auto* const remove = named<QAbstractButton>(name);
    ASSERT_NE(remove, nullptr) << name;
    QTest::mouseClick(remove, Qt::LeftButton);
    turn();
  }
  EXPECT_TRUE(app_->services.replacements().entries().empty());
  EXPECT_TRUE(shows("Записи (0)"));
}

TEST_F(QtWindowsTest, OfALongDictionaryOnlyTheRowsInSightAreDrawn) {
  launch();
  std::vector<ReplacementStore::Entry> entries;
  entries.reserve(20'000);
  for (int i = 0; i < 20'000; ++i) {
    entries.push_back(
        {Uuid::random(), "слово " + std::to_string(i), "\u202Eשלום\t\u0007👍🏽"});
  }
  app_->services.replacements().setEntries(entries);
  app_->services.showSettingsWindow();
  tabs()->setCurrentIndex(2);
  turn();
  auto* const area = rowsArea();
  ASSERT_NE(area, nullptr);
  auto* const bar = area->verticalScrollBar();
  for (const auto part : {1, 2, 3, 4}) {
    bar->setValue(bar->maximum() * part / 4);
    turn();
  }
  EXPECT_NE(named<QAbstractButton>("Удалить «слово 19999»"), nullptr);
  // It scrolls by itself, and not the sections around it as well.
  const auto* const form = qobject_cast<QAbstractScrollArea*>(tabs()->currentWidget());
  ASSERT_NE(form, nullptr);
  EXPECT_EQ(form->verticalScrollBar()->maximum(), 0);
  EXPECT_GT(area->height(), 5 * bar->singleStep());
  EXPECT_LT(area->findChildren<QAbstractButton*>().size(), 30);
  QTest::mouseClick(named<QAbstractButton>("Удалить «слово 19998»"), Qt::LeftButton);
  turn();
  EXPECT_EQ(named<QAbstractButton>("Удалить «слово 19998»"), nullptr);
  EXPECT_EQ(app_->services.replacements().entries().size(), 19'999U);
}

TEST_F(QtWindowsTest, WhatIsPastedIsOneLine) {
  openSettings(1);
  const auto paste = [&](const char* field) {
    auto* const edit = named<QLineEdit>(field);
    QApplication::clipboard()->setText("\r\nодна\r\nдве\u2028три\n\n");
    edit->setText("<>");
    edit->setCursorPosition(1);
    edit->paste();
    turn();
    EXPECT_EQ(edit->text(), "< одна две три  >") << field;
    EXPECT_EQ(edit->cursorPosition(), edit->text().size() - 1) << field;
    edit->selectAll();
    edit->paste();
    turn();
    EXPECT_EQ(edit->text(), "одна две три") << field;
  };
  paste("API-ключ (хранится в Keychain)");
  EXPECT_EQ(app_->services.text.keychain().read("deepl-api-key"), "одна две три");
  tabs()->setCurrentIndex(2);
  turn();
  paste(patternField);
  paste(replacementField);
  QTest::mouseClick(named<QAbstractButton>("Добавить"), Qt::LeftButton);
  const auto& added = app_->services.replacements().entries().back();
  EXPECT_EQ(added.pattern, "одна две три");
  EXPECT_EQ(added.replacement, "одна две три");
}

TEST_F(QtWindowsTest, AStoredKeyWithALineBreakCanBeEdited) {
  launch();
  app_->services.text.keychain().write("key\n", "deepl-api-key");
  app_->services.showSettingsWindow();
  tabs()->setCurrentIndex(1);
  turn();
  auto* const key = named<QLineEdit>("API-ключ (хранится в Keychain)");
  ASSERT_EQ(key->text(), "key");
  key->setCursorPosition(1);
  settings().isEnabled.set(false);
  turn();
  EXPECT_EQ(key->cursorPosition(), 1);
  type(key, "!");
  EXPECT_EQ(app_->services.text.keychain().read("deepl-api-key"), "k!ey");
}

/// What a tool tip shows.
std::string tipText(const QString& tip) {
  return (Qt::mightBeRichText(tip) ? QTextDocumentFragment::fromHtml(tip).toPlainText() : tip)
      .toStdString();
}

TEST_F(QtWindowsTest, EntriesShowWhatTheyHold) {
  launch();
  const std::string longText(100'000, 'w');
  app_->services.replacements().setEntries(
      {{Uuid::random(), "a&b <b>c</b>", "\u0001\u007F\u0080"},
       {Uuid::random(), "\u202Eшалом שלום", "👍🏽\tдва\nтри"},
       {Uuid::random(), longText, longText}});
  openSettings(2);
  for (const auto* shown :
       {"a&b <b>c</b>", "\u2401\u2421\uFFFD", "\uFFFDшалом שלום", "👍🏽 два три"}) {
    EXPECT_TRUE(shows(shown)) << shown;
  }
  for (const auto* label : rowsArea()->findChildren<QLabel*>()) {
    if (!label->toolTip().isEmpty()) {
      EXPECT_EQ(tipText(label->toolTip()), label->text().toStdString());
    }
    EXPECT_LE(label->text().size(), 500);
  }
  const auto* const remove = named<QAbstractButton>("Удалить «a&b <b>c</b>»");
  ASSERT_NE(remove, nullptr);
  EXPECT_EQ(tipText(remove->toolTip()), "Удалить «a&b <b>c</b>»");
  EXPECT_EQ(window("settings")->width(), 480);
}

TEST_F(QtWindowsTest, TheRecorderSwallowsKeysUntilItHasItsHotkey) {
  openSettings(3);
  auto* const row = named<QAbstractButton>("Ручное переключение раскладки");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->text(), "⌃⌥P");
  QTest::mouseClick(row, Qt::LeftButton);
  turn();
  EXPECT_EQ(row->text(), "Нажми комбинацию… (⎋ отмена)");
  constexpr int tKey = 28;
  constexpr int spaceKey = 65;
  press(tKey, Qt::Key_T, Qt::NoModifier);
  press(spaceKey, Qt::Key_Space, Qt::NoModifier);
  press(37, Qt::Key_Control, Qt::ControlModifier);
  EXPECT_EQ(row->text(), "Нажми комбинацию… (⎋ отмена)");
  press(tKey, Qt::Key_T, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(row->text(), "⌃⌥T");
  EXPECT_EQ(settings().manualSwitchHotkey(), (Hotkey{17, 0xC0000}));
}

TEST_F(QtWindowsTest, AnotherTabStopsTheRecording) {
  openSettings(3);
  QTest::mouseClick(named<QAbstractButton>("Перевод №1"), Qt::LeftButton);
  turn();
  tabs()->setCurrentIndex(2);
  turn();
  tabs()->setCurrentIndex(3);
  turn();
  EXPECT_EQ(named<QAbstractButton>("Перевод №1")->text(), "⌃⌥E");
}

TEST_F(QtWindowsTest, ThePermissionsWindowFollowsThePermissions) {
  desktop_.session.setAccessibilityGranted(false);
  desktop_.session.setInputMonitoringGranted(false);
  launch();
  auto* const permissions = window("permissions");
  ASSERT_NE(permissions, nullptr);
  EXPECT_TRUE(permissions->isVisible());
  EXPECT_EQ(permissions->width(), 480);
  const auto height = permissions->height();
  const auto buttons = [&] {
    int visible = 0;
    for (const auto* button : permissions->findChildren<QAbstractButton*>()) {
      visible += button->isVisible() ? 1 : 0;
    }
    return visible;
  };
  EXPECT_EQ(buttons(), 4);
  desktop_.session.setAccessibilityGranted(true);
  desktop_.time.runFor(std::chrono::seconds(1));
  turn();
  EXPECT_EQ(buttons(), 2);
  EXPECT_LT(permissions->height(), height);
  permissions->close();
  EXPECT_FALSE(permissions->isVisible());
  desktop_.session.setInputMonitoringGranted(true);
  desktop_.time.runFor(std::chrono::seconds(1));
  turn();
  EXPECT_FALSE(permissions->isVisible());
}

/// Whether every visible text of the window has the room that it needs, and asks for no more.
TEST_F(QtWindowsTest, NoTextIsCut) {
  for (const auto pointSize : {9, 12, 16}) {
    auto font = QApplication::font();
    font.setPointSize(pointSize);
    QApplication::setFont(font);
    openSettings(0);
    settings().translationEngine.set(EngineKind::foundationModel);
    for (const auto tab : {0, 1, 2, 3}) {
      tabs()->setCurrentIndex(tab);
      turn();
      for (const auto* label : window("settings")->findChildren<QLabel*>()) {
        if (!label->isVisible() || !label->wordWrap()) continue;
        const auto needed =
            label->fontMetrics()
                .boundingRect(0, 0, label->width(), 10'000, Qt::TextWordWrap, label->text())
                .height();
        EXPECT_GE(label->height(), needed) << pointSize << ": " << label->text().toStdString();
        EXPECT_EQ(label->sizeHint().height(), needed) << label->text().toStdString();
        EXPECT_EQ(label->minimumHeight(), needed) << label->text().toStdString();
        EXPECT_GE(label->width(), label->minimumSizeHint().width())
            << pointSize << ": " << label->text().toStdString();
      }
    }
    app_.reset();
  }
}

bool hasColor(const QImage& image, const QColor& color) {
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixelColor(x, y) == color) return true;
    }
  }
  return false;
}

TEST_F(QtWindowsTest, IconsFollowTheColoursOfTheTheme) {
  openSettings(0);
  const auto before = QApplication::palette();
  const QColor text(0xE0, 0xF0, 0xD0);
  QPalette dark(QColor(0x20, 0x20, 0x20));
  for (const auto role : {QPalette::ButtonText, QPalette::WindowText}) dark.setColor(role, text);
  const auto tab = [] { return tabs()->tabIcon(0).pixmap(64).toImage(); };
  const auto content = [] { return tabs()->currentWidget()->grab().toImage(); };
  EXPECT_FALSE(hasColor(tab(), text));
  EXPECT_FALSE(hasColor(content(), text));
  QApplication::setPalette(dark);
  turn();
  EXPECT_TRUE(hasColor(tab(), text));
  EXPECT_TRUE(hasColor(content(), text));
  QApplication::setPalette(before);
}

TEST_F(QtWindowsTest, TheProgramHasAnIconOfItsOwn) {
  const auto icon = applicationIcon().pixmap(64).toImage();
  EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0);
  EXPECT_TRUE(hasColor(icon, Qt::white));
}

TEST_F(QtWindowsTest, EveryControlIsReachedByKeyboardAndHasAName) {
  openSettings(0);
  for (const auto tab : {0, 1, 2, 3}) {
    tabs()->setCurrentIndex(tab);
    turn();
    for (const auto* control : tabs()->currentWidget()->findChildren<QWidget*>()) {
      const auto isControl = qobject_cast<const QAbstractButton*>(control) != nullptr ||
                             qobject_cast<const QComboBox*>(control) != nullptr ||
                             qobject_cast<const QLineEdit*>(control) != nullptr;
      if (!isControl || !control->isVisible()) continue;
      EXPECT_FALSE(control->accessibleName().isEmpty()) << control->metaObject()->className();
      EXPECT_TRUE(control->focusPolicy() & Qt::TabFocus) << control->accessibleName().toStdString();
    }
  }
}

}  // namespace
}  // namespace kivra::qt
