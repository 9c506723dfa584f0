#pragma once

namespace kivra::x11 {

/// Runs the keyboard guard on the X server of $DISPLAY with its end of the socket; answers the exit
/// status of the process.
int runKeyboardGuard(int channelFd);

}  // namespace kivra::x11
