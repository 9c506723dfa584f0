#include "platform/qt/qt_application.h"

#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSocketNotifier>
#include <cstdlib>
#include <utility>

#include "platform/qt/symbol.h"

namespace kivra::qt {

namespace {

/// Makes the signals readable instead of deadly, for all threads made later as well.
int catchSignals() {
  sigset_t caught;
  sigemptyset(&caught);
  sigaddset(&caught, SIGTERM);
  sigaddset(&caught, SIGINT);
  sigaddset(&caught, SIGHUP);
  pthread_sigmask(SIG_BLOCK, &caught, nullptr);
  return signalfd(-1, &caught, SFD_CLOEXEC | SFD_NONBLOCK);
}

bool isCompositorThere() {
  const auto display = qEnvironmentVariable("WAYLAND_DISPLAY");
  return !display.isEmpty() &&
         QFileInfo::exists(QDir(qEnvironmentVariable("XDG_RUNTIME_DIR")).filePath(display));
}

/// Qt takes an X server, and ends where there is none, unless the session says of itself that it is
/// Wayland's, which one that was started from a console does not. Where there is no display at all,
/// windows are drawn for nobody: the program has to run there too, to say what is missing.
void chooseDisplay() {
  if (isCompositorThere()) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "wayland");
  } else if (!qEnvironmentVariableIsSet("DISPLAY")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
}

/// Qt asks but once whether the desktop's accessibility is on, and would stay silent for as long as
/// it runs; the program needs it switched on in any case, and helps with that.
void speakWhateverIsOn() { qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"); }

int& prepared(int& count) {
  chooseDisplay();
  speakWhateverIsOn();
  return count;
}

bool isLooping = false;

std::function<void()>& displayLostHandler() {
  static std::function<void()> handler;
  return handler;
}

/// Qt leaves no other way to learn of a lost display: it ends the process from inside the loop.
void tellOfLostDisplay() {
  if (isLooping && displayLostHandler()) displayLostHandler()();
}

}  // namespace

QtApplication::QtApplication(int& count, char** values)
    : caughtSignals_(catchSignals()), application_(prepared(count), values) {
  QApplication::setApplicationName("Kivra");
  // On Wayland the windows' application id.
  QApplication::setDesktopFileName("app.kivra.Kivra");
  QApplication::setWindowIcon(applicationIcon());
  QApplication::setQuitOnLastWindowClosed(false);
  auto* const notifier = new QSocketNotifier(caughtSignals_, QSocketNotifier::Read, &application_);
  QObject::connect(notifier, &QSocketNotifier::activated, &application_, [] { exit(0); });
}

QtApplication::~QtApplication() {
  // What was dropped after the loop had ended has nobody else who deletes it.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  ::close(caughtSignals_);
}

void QtApplication::setDisplayLostHandler(std::function<void()> handler) {
  displayLostHandler() = std::move(handler);
}

int QtApplication::run() {
  std::atexit(tellOfLostDisplay);
  isLooping = true;
  const auto status = QApplication::exec();
  isLooping = false;
  return status;
}

void QtApplication::exit(int status) {
  // Before the loop runs Qt ignores a request to end it.
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [status] { QCoreApplication::exit(status); },
      Qt::QueuedConnection);
}

}  // namespace kivra::qt
