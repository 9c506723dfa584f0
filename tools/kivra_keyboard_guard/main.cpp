#include "platform/x11/guard_main.h"

namespace {

// Where the program that started the guard has put the guard's end of their socket.
constexpr int channelFd = 3;

}  // namespace

int main() { return kivra::x11::runKeyboardGuard(channelFd); }
