#include "platform/qt/qt_run_loop.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QTimer>
#include <utility>

namespace kivra::qt {

namespace {

class QtTimer : public Timer {
 public:
  QtTimer(std::chrono::milliseconds interval, std::function<void()> block) {
    timer_.setTimerType(Qt::PreciseTimer);
    // A block may drop its own timer, and itself with it.
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [stored = std::move(block)] {
      const auto called = stored;
      called();
    });
    timer_.start(interval);
  }

 private:
  QTimer timer_;
};

/// Qt's timers count in milliseconds; a block must not come early.
std::chrono::milliseconds roundedUp(std::chrono::microseconds duration) {
  return std::chrono::ceil<std::chrono::milliseconds>(duration);
}

}  // namespace

std::unique_ptr<Timer> QtRunLoop::scheduleRepeatingTimer(std::chrono::microseconds interval,
                                                         std::function<void()> block) {
  return std::make_unique<QtTimer>(roundedUp(interval), std::move(block));
}

void QtRunLoop::asyncAfter(std::chrono::microseconds delay, std::function<void()> block) {
  auto* const timer = new QTimer(QCoreApplication::instance());
  timer->setSingleShot(true);
  timer->setTimerType(Qt::PreciseTimer);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, called = std::move(block)] {
    timer->deleteLater();
    called();
  });
  timer->start(roundedUp(delay));
}

void QtRunLoop::runFor(std::chrono::microseconds duration) {
  QEventLoop loop;
  QTimer timer;
  timer.setSingleShot(true);
  timer.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
  timer.start(roundedUp(duration));
  loop.exec();
}

std::shared_ptr<void> QtRunLoop::watch(int fd, std::function<void()> onReadable) {
  auto notifier = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
  QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(),
                   [called = std::move(onReadable)] { called(); });
  // The function may drop its own watch.
  return {notifier.release(), [](QSocketNotifier* dropped) {
            dropped->setEnabled(false);
            dropped->deleteLater();
          }};
}

}  // namespace kivra::qt
