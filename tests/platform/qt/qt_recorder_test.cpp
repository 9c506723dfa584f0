// Recording where every key of the user is reported before it arrives.

#include "qt_windows_fixture.h"

namespace kivra::qt {
namespace {

class ReportedKeysTest : public QtWindowsTest {
 protected:
  void SetUp() override {
    app_.emplace(desktop_.platform(windows_, reported_, desktop_.statusBar));
    app_->delegate->applicationDidFinishLaunching();
    openSettings(3);
    row_ = named<QAbstractButton>("Ручное переключение раскладки");
    QTest::mouseClick(row_, Qt::LeftButton);
    turn();
  }

  // The program uses the monitors to its end.
  void TearDown() override { app_.reset(); }

  bool take(std::uint16_t key, std::uint64_t flags) {
    const auto isTaken =
        reported_.take({.type = EventType::keyDown, .keyCode = key, .flags = flags});
    turn();
    return isTaken;
  }

  static constexpr std::uint64_t control = event_flags::control;

  QtLocalKeyMonitors reported_{[] { return true; }};
  QAbstractButton* row_ = nullptr;
};

TEST_F(ReportedKeysTest, KeysThatTheUserDidNotPressAreNotRecorded) {
  press(55, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(row_->text(), "Нажми комбинацию… (⎋ отмена)");
  const Event modifier{.type = EventType::flagsChanged, .keyCode = 59, .flags = control};
  EXPECT_TRUE(reported_.take(modifier));
  EXPECT_TRUE(take(17, control));
  EXPECT_EQ(row_->text(), "⌃T");
  EXPECT_FALSE(take(17, control)) << "nobody waits for keys any more";
}

TEST_F(ReportedKeysTest, TheKeyThatEndsTheRecordingDoesNothingElseWhenItArrives) {
  row_->setFocus();
  EXPECT_TRUE(take(key_codes::space, control));
  EXPECT_EQ(row_->text(), "⌃Space");
  constexpr int spaceKey = 65;
  const auto pressSpace = [&] {
    press(spaceKey, Qt::Key_Space, Qt::NoModifier);
    QTest::keyRelease(row_, Qt::Key_Space);
    turn();
  };
  pressSpace();
  EXPECT_EQ(row_->text(), "⌃Space") << "the recorded key has pressed the button again";
  pressSpace();
  EXPECT_EQ(row_->text(), "Нажми комбинацию… (⎋ отмена)");
  // One that arrives before it is reported leaves nothing behind.
  press(spaceKey, Qt::Key_Space, Qt::ControlModifier);
  EXPECT_TRUE(take(key_codes::space, control));
  pressSpace();
  EXPECT_EQ(row_->text(), "Нажми комбинацию… (⎋ отмена)");
}

}  // namespace
}  // namespace kivra::qt
