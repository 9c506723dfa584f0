#include "linux_text_services.h"

#include "platform/qt/main_thread.h"

namespace kivra {

LinuxTextServices::LinuxTextServices(RunLoop& runLoop, AccessibilityBus& bus,
                                     const LocalLanguageModel::Options& model)
    : accessibility(bus, runLoop),
      languageModel(httpClient, runLoop, model),
      pasteboard(runLoop),
      translation(httpClient, languageRecognizer, qt::callOnMainThread) {}

}  // namespace kivra
