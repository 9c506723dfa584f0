#pragma once

#include "platform/platform.h"

namespace kivra {

/// The same services with other taps and another posting, for those that stand between the program
/// and its desktop.
inline Platform withEvents(const Platform& whole, EventTaps& taps, EventPosting& posting) {
  return {.accessibility = whole.accessibility,
          .alerts = whole.alerts,
          .application = whole.application,
          .clock = whole.clock,
          .defaults = whole.defaults,
          .eventPosting = posting,
          .eventTaps = taps,
          .httpClient = whole.httpClient,
          .inputSources = whole.inputSources,
          .keychain = whole.keychain,
          .languageModel = whole.languageModel,
          .languageRecognizer = whole.languageRecognizer,
          .localKeyMonitors = whole.localKeyMonitors,
          .locale = whole.locale,
          .log = whole.log,
          .notifications = whole.notifications,
          .pasteboard = whole.pasteboard,
          .privacy = whole.privacy,
          .runLoop = whole.runLoop,
          .spellChecker = whole.spellChecker,
          .statusBar = whole.statusBar,
          .terms = whole.terms,
          .translation = whole.translation,
          .windows = whole.windows,
          .workspace = whole.workspace};
}

}  // namespace kivra
