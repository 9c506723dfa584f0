#include "platform/x11/x11_desktop.h"

#include <utility>

#include "platform/guard/application_pauses.h"

namespace kivra::x11 {

X11Desktop::X11Desktop(Environment environment)
    : environment_(std::move(environment)),
      guard_(environment_.guardProgram),
      eventTaps({.guard = guard_,
                 .posted = posted_,
                 .group = group_,
                 .runLoop = environment_.runLoop,
                 .log = environment_.log,
                 .watchFd = environment_.watchFd,
                 .groupSelected = environment_.groupSelected,
                 .hasSelectionBehind = environment_.hasSelectionBehind,
                 .pauseAfterErasing =
                     [this] {
                       return guard::pauseAfterErasing(
                           workspace.frontmostBundleIdentifier().value_or(""));
                     },
                 .postRefused = [this] { eventPosting.refuse(); },
                 .isTakenByOwnWindow = environment_.isTakenByOwnWindow}),
      inputSources(connection_, posted_, group_, environment_.log),
      workspace(connection_, {.isPasswordFocused = environment_.isPasswordFocused,
                              .activeWindowChanged = environment_.activeWindowChanged,
                              .open = environment_.open}) {
  connection_.onMapChange([this] { inputSources.invalidate(); });
}

bool X11Desktop::connect() {
  if (connection_.isConnected()) return true;
  if (!connection_.connect()) return false;
  watch_ = environment_.watchFd(connection_.fd(), [this] { readEvents(); });
  return true;
}

void X11Desktop::readEvents() {
  connection_.readEvents();
  if (!connection_.isLost()) return;
  watch_.reset();
  environment_.connectionLost();
}

}  // namespace kivra::x11
