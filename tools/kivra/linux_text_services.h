#pragma once

#include <functional>

#include "platform/atspi/accessibility_bus.h"
#include "platform/atspi/atspi_accessibility.h"
#include "platform/engines/local_language_model.h"
#include "platform/engines/offline_translation.h"
#include "platform/language/cld2_language_recognizer.h"
#include "platform/log.h"
#include "platform/qt/qt_http_client.h"
#include "platform/qt/qt_keychain.h"
#include "platform/run_loop.h"
#include "platform/session/environment_locale.h"

namespace kivra {

/// What translating and correcting needs of the Linux desktop, put together. Needs a
/// QCoreApplication; ends before it and before the run loop and the bus.
struct LinuxTextServices {
  /// `pingActiveWindow` is as in guard::KeyboardSession.
  LinuxTextServices(RunLoop& runLoop, AccessibilityBus& bus, Log& log,
                    std::function<std::function<bool()>()> pingActiveWindow,
                    const LocalLanguageModel::Options& model = {});

  AtspiAccessibility accessibility;
  qt::QtHttpClient httpClient;
  qt::QtKeychain keychain;
  LocalLanguageModel languageModel;
  Cld2LanguageRecognizer languageRecognizer;
  EnvironmentLocale locale;
  OfflineTranslation translation;
};

}  // namespace kivra
