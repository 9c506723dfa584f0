#include "platform/guard/guarded_keyboard.h"

#include "platform/guard/application_pauses.h"
#include "platform/guard/protocol/meeting_place.h"

namespace kivra::guard {

namespace {

std::unique_ptr<GuardDoor> doorOf(const KeyboardSession::Environment& environment,
                                  GuardedKeyboard::Starter starter) {
  if (starter == GuardedKeyboard::Starter::program) return nullptr;
  return std::make_unique<GuardDoor>(meetingPlace(), environment.guardProgram, environment.log);
}

}  // namespace

GuardedKeyboard::GuardedKeyboard(const KeyboardSession::Environment& environment,
                                 DisplayLayouts& display, Workspace& workspace, Starter starter)
    : link_(environment.guardProgram, doorOf(environment, starter)),
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
