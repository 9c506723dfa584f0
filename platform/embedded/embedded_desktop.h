#pragma once

#include "platform/embedded/effects.h"
#include "platform/embedded/embedded_application.h"
#include "platform/embedded/embedded_defaults_database.h"
#include "platform/embedded/embedded_event_stream.h"
#include "platform/embedded/embedded_input_sources.h"
#include "platform/embedded/embedded_pasteboard.h"
#include "platform/embedded/embedded_session.h"
#include "platform/embedded/embedded_spell_checker.h"
#include "platform/embedded/virtual_time.h"
#include "platform/platform.h"

namespace kivra::embedded {

/// A whole desktop in memory: every service of the boundary, and the user's side of each.
class EmbeddedDesktop {
 public:
  EmbeddedDesktop(Effects::Sink sink, EmbeddedSpellChecker::RealChecker realChecker)
      : effects(std::move(sink)), spellChecker(std::move(realChecker)) {}
  EmbeddedDesktop(const EmbeddedDesktop&) = delete;
  EmbeddedDesktop& operator=(const EmbeddedDesktop&) = delete;

  Platform platform() {
    return {.application = session,
            .clock = time,
            .defaults = defaults,
            .eventPosting = events,
            .eventTaps = events,
            .inputSources = inputSources,
            .log = session,
            .privacy = session,
            .runLoop = time,
            .spellChecker = spellChecker,
            .workspace = session};
  }

  Effects effects;
  VirtualTime time{effects};
  EmbeddedInputSources inputSources{effects};
  EmbeddedPasteboard pasteboard{effects};
  EmbeddedApplication application{inputSources, pasteboard};
  EmbeddedSession session{effects, application};
  EmbeddedEventStream events{effects, application, session};
  EmbeddedDefaultsDatabase defaults;
  EmbeddedSpellChecker spellChecker;
};

}  // namespace kivra::embedded
