#pragma once

#include <QApplication>
#include <functional>

namespace kivra::qt {

/// The process as Qt sees it; without a display its windows stay unseen. One for the whole run,
/// made before everything that uses Qt. SIGTERM, SIGINT and SIGHUP end the loop in good order.
class QtApplication {
 public:
  QtApplication(int& count, char** values);
  ~QtApplication();
  QtApplication(const QtApplication&) = delete;
  QtApplication& operator=(const QtApplication&) = delete;

  /// Called when the display is lost while the loop runs; the process ends with status 1 then.
  static void setDisplayLostHandler(std::function<void()> handler);

  /// Runs the event loop; answers the status given to `exit`.
  int run();

  /// Ends the loop, now or as soon as it runs.
  static void exit(int status);

 private:
  int caughtSignals_;
  QApplication application_;
};

}  // namespace kivra::qt
