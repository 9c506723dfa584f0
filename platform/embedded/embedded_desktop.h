#pragma once

#include "platform/embedded/effects.h"
#include "platform/embedded/embedded_accessibility.h"
#include "platform/embedded/embedded_alerts.h"
#include "platform/embedded/embedded_application.h"
#include "platform/embedded/embedded_defaults_database.h"
#include "platform/embedded/embedded_event_stream.h"
#include "platform/embedded/embedded_http_client.h"
#include "platform/embedded/embedded_input_sources.h"
#include "platform/embedded/embedded_keychain.h"
#include "platform/embedded/embedded_language_model.h"
#include "platform/embedded/embedded_language_recognizer.h"
#include "platform/embedded/embedded_locale.h"
#include "platform/embedded/embedded_notifications.h"
#include "platform/embedded/embedded_pasteboard.h"
#include "platform/embedded/embedded_session.h"
#include "platform/embedded/embedded_spell_checker.h"
#include "platform/embedded/embedded_status_bar.h"
#include "platform/embedded/embedded_terms.h"
#include "platform/embedded/embedded_translation.h"
#include "platform/embedded/embedded_windows.h"
#include "platform/embedded/virtual_time.h"
#include "platform/monitor_list.h"
#include "platform/platform.h"

namespace kivra::embedded {

/// A whole desktop in memory: every service of the boundary, and the user's side of each.
class EmbeddedDesktop {
 public:
  /// `realRecognizer` may be null: then no text tells its language.
  EmbeddedDesktop(Effects::Sink sink, EmbeddedSpellChecker::RealChecker realChecker,
                  LanguageRecognizer* realRecognizer = nullptr)
      : effects(std::move(sink)),
        spellChecker(std::move(realChecker)),
        languageRecognizer(realRecognizer) {}
  EmbeddedDesktop(const EmbeddedDesktop&) = delete;
  EmbeddedDesktop& operator=(const EmbeddedDesktop&) = delete;

  Platform platform() { return platform(windows, localKeyMonitors, statusBar); }

  /// With windows, their keys and the status bar in other hands: those of a desktop that can be
  /// seen.
  Platform platform(Windows& otherWindows, LocalKeyMonitors& otherMonitors,
                    StatusBar& otherStatusBar) {
    return platform(otherWindows, otherMonitors, otherStatusBar, terms);
  }

  /// With the words of that desktop as well.
  Platform platform(Windows& otherWindows, LocalKeyMonitors& otherMonitors,
                    StatusBar& otherStatusBar, Terms& otherTerms) {
    return {.accessibility = accessibility,
            .alerts = alerts,
            .application = session,
            .clock = time,
            .defaults = defaults,
            .eventPosting = events,
            .eventTaps = events,
            .httpClient = httpClient,
            .inputSources = inputSources,
            .keychain = keychain,
            .languageModel = languageModel,
            .languageRecognizer = languageRecognizer,
            .localKeyMonitors = otherMonitors,
            .locale = locale,
            .log = session,
            .notifications = notifications,
            .pasteboard = pasteboard,
            .privacy = session,
            .runLoop = time,
            .spellChecker = spellChecker,
            .statusBar = otherStatusBar,
            .terms = otherTerms,
            .translation = translation,
            .windows = otherWindows,
            .workspace = session};
  }

  Effects effects;
  VirtualTime time{effects};
  EmbeddedInputSources inputSources{effects};
  EmbeddedPasteboard pasteboard{effects};
  EmbeddedApplication application{inputSources, pasteboard};
  EmbeddedSession session{effects, application};
  MonitorList localKeyMonitors;
  EmbeddedEventStream events{effects, application, session, localKeyMonitors};
  EmbeddedDefaultsDatabase defaults;
  EmbeddedSpellChecker spellChecker;
  EmbeddedAccessibility accessibility{application};
  EmbeddedAlerts alerts{effects};
  EmbeddedHttpClient httpClient{effects, time};
  EmbeddedKeychain keychain;
  EmbeddedLanguageModel languageModel{effects, time};
  EmbeddedLanguageRecognizer languageRecognizer;
  EmbeddedLocale locale;
  EmbeddedTranslation translation{effects, time, languageRecognizer};
  EmbeddedWindows windows;
  EmbeddedStatusBar statusBar{effects};
  EmbeddedNotifications notifications;
  EmbeddedTerms terms;
};

}  // namespace kivra::embedded
