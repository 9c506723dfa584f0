#include "platform/x11/guard_main.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include "platform/x11/keyboard_guard.h"

namespace kivra::x11 {

namespace {

// The server is gone: so are its grabs, and the program notices by its own connection.
int endWithServer(Display* /*display*/) { std::_Exit(EXIT_FAILURE); }

int refuse(GuardChannel channel, const char* reason) {
  std::cerr << "Kivra: " << reason << '\n';
  channel.send({.kind = ReportKind::unavailable});
  return EXIT_FAILURE;
}

}  // namespace

int runKeyboardGuard(int channelFd) {
  // What stops or interrupts the program from its terminal must not reach the guard, which would
  // then hold the keyboard and not answer.
  ::setsid();
  std::signal(SIGINT, SIG_IGN);
  std::signal(SIGTERM, SIG_IGN);
  std::signal(SIGHUP, SIG_IGN);
  std::signal(SIGTSTP, SIG_IGN);
  ::prctl(PR_SET_NAME, "keyboard-guard");
  XSetIOErrorHandler(endWithServer);
  DisplayPointer display(XOpenDisplay(nullptr));
  if (!display) return refuse(GuardChannel(channelFd), "no X server");
  if (!missingExtensions(display.get()).empty()) {
    return refuse(GuardChannel(channelFd), "the X server lacks extensions");
  }
  try {
    KeyboardGuard(std::move(display), channelFd).run();
  } catch (const std::exception& error) {
    return refuse(GuardChannel(channelFd), error.what());
  }
  return EXIT_SUCCESS;
}

}  // namespace kivra::x11
