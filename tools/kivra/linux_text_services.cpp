#include "linux_text_services.h"

#include "platform/qt/main_thread.h"

namespace kivra {

LinuxTextServices::LinuxTextServices(RunLoop& runLoop, AccessibilityBus& bus)
    : accessibility(bus, runLoop),
      languageModel(httpClient, runLoop),
      pasteboard(runLoop),
      translation(httpClient, languageRecognizer, qt::callOnMainThread) {}

}  // namespace kivra
