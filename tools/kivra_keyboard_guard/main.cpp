#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <string_view>

#include "platform/guard/protocol/meeting_place.h"
#include "session_display.h"

namespace {

using kivra::guard::GuardedProgram;

// Where the program that started the guard has put the guard's end of their socket.
constexpr int channelFd = 3;

/// The program is installed beside the guard, or where the user's programs are.
std::filesystem::path programExecutable() {
  const auto directory = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  const auto beside = directory / "kivra";
  const auto installed = directory.parent_path().parent_path() / "bin" / "kivra";
  return std::filesystem::exists(beside) ? beside : installed;
}

GuardedProgram programOf(int count, char** values) {
  // As the desktop entry says that the package installs.
  constexpr std::string_view startedByDesktop = "--started-by-desktop";
  if (count < 2 || values[1] != startedByDesktop) return {.channelFd = channelFd};
  const auto place = kivra::guard::meetingPlace();
  if (!place) {
    std::cerr << "Kivra: нет XDG_RUNTIME_DIR, программу негде найти\n";
    ::_exit(EXIT_FAILURE);
  }
  return {.place = *place, .executable = programExecutable()};
}

}  // namespace

// Nothing that a library does at the end of a process may keep the keyboard.
int main(int count, char** values) {
  ::_exit(kivra::guard::runGuard(kivra::sessionDisplay(), programOf(count, values)));
}
