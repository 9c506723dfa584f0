// Runs the tests of the Qt backend on a screen that nobody sees.

#include <gtest/gtest.h>

#include <QApplication>

int main(int count, char** values) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&count, values);
  QApplication application(count, values);
  return RUN_ALL_TESTS();
}
