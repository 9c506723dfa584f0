#pragma once

#include "platform/guard/display_layouts.h"
#include "platform/guard/guard_event_posting.h"
#include "platform/guard/guard_event_taps.h"
#include "platform/guard/guard_input_sources.h"
#include "platform/guard/guard_link.h"
#include "platform/guard/keyboard_session.h"
#include "platform/guard/posted_keys.h"

namespace kivra::guard {

/// The keyboard guard and what goes through it, joined: the same in every session.
class GuardedKeyboard {
 public:
  /// Who starts the guard.
  enum class Starter { program, desktop };

  GuardedKeyboard(const KeyboardSession::Environment& environment, DisplayLayouts& display,
                  Workspace& workspace, Starter starter = Starter::program);

  bool isGuardRunning() const { return link_.fd() >= 0 && !link_.isGone(); }

 private:
  GuardLink link_;
  PostedKeys posted_;

 public:
  GuardEventPosting eventPosting{posted_};
  GuardInputSources inputSources;
  GuardEventTaps eventTaps;
};

}  // namespace kivra::guard
