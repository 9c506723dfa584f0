#include "platform/guard/guarded_keyboard.h"

#include "platform/guard/application_pauses.h"

namespace kivra::guard {

GuardedKeyboard::GuardedKeyboard(const KeyboardSession::Environment& environment,
                                 DisplayLayouts& display, Workspace& workspace)
    : link_(environment.guardProgram),
      inputSources(display, posted_, environment.log),
      eventTaps({.guard = link_,
                 .posted = posted_,
                 .runLoop = environment.runLoop,
                 .log = environment.log,
                 .watchFd = environment.watchFd,
                 .groupMet = [this](auto group) { inputSources.meetGroup(group); },
                 .groupSelected = environment.groupSelected,
                 .hasSelectionBehind = environment.hasSelectionBehind,
                 .lastCaretMove = environment.lastCaretMove,
                 .pauseAfterErasing =
                     [&workspace] {
                       return pauseAfterErasing(workspace.frontmostBundleIdentifier().value_or(""));
                     },
                 .postRefused = [this] { eventPosting.refuse(); },
                 .isTakenByOwnWindow = environment.isTakenByOwnWindow}) {}

}  // namespace kivra::guard
