#include <signal.h>
#include <sys/signalfd.h>

#include <QCoreApplication>
#include <filesystem>
#include <iostream>

#include "app/kivra_app.h"
#include "linux_desktop.h"

namespace {

/// The guard lies beside the program, or where packages put programs that nobody calls by hand.
std::string guardProgram() {
  constexpr const char* name = "kivra-keyboard-guard";
  const auto directory = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  const auto installed = directory.parent_path() / "libexec" / "kivra" / name;
  const auto beside = directory / name;
  return std::filesystem::exists(beside) ? beside : installed;
}

/// Makes SIGTERM and SIGINT readable instead of deadly, for all threads made later as well.
int takeSignals() {
  sigset_t caught;
  sigemptyset(&caught);
  sigaddset(&caught, SIGTERM);
  sigaddset(&caught, SIGINT);
  pthread_sigmask(SIG_BLOCK, &caught, nullptr);
  return signalfd(-1, &caught, SFD_CLOEXEC | SFD_NONBLOCK);
}

}  // namespace

int main(int count, char** values) {
  const auto caught = takeSignals();
  QCoreApplication application(count, values);
  kivra::LinuxDesktop desktop(guardProgram());
  kivra::qt::QtRunLoop runLoop;
  const auto watch = runLoop.watch(caught, [] { QCoreApplication::quit(); });
  kivra::KivraApp kivra(desktop.platform());
  // From the loop, so that a request to quit finds it running.
  runLoop.asyncAfter(std::chrono::microseconds(0),
                     [&kivra] { kivra.delegate->applicationDidFinishLaunching(); });
  return QCoreApplication::exec();
}
