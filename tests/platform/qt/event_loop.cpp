#include "event_loop.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

namespace kivra::qt {

bool turnUntil(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
  QEventLoop loop;
  QElapsedTimer passed;
  passed.start();
  QTimer tick;
  tick.start(1);  // the condition may depend on things that are no events
  while (!condition()) {
    if (passed.elapsed() > timeout.count()) return false;
    loop.processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

}  // namespace kivra::qt

int main(int count, char** values) {
  testing::InitGoogleTest(&count, values);
  const QCoreApplication application(count, values);
  return RUN_ALL_TESTS();
}
