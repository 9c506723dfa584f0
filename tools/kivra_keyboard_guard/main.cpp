#include <unistd.h>

#include "session_display.h"

namespace {

// Where the program that started the guard has put the guard's end of their socket.
constexpr int channelFd = 3;

}  // namespace

// Nothing that a library does at the end of a process may keep the keyboard.
int main() { ::_exit(kivra::guard::runGuard(kivra::sessionDisplay(), channelFd)); }
