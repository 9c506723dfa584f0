#include "linux_text_services.h"

#include <memory>
#include <set>
#include <utility>

#include "platform/engines/missing_pair.h"
#include "platform/qt/main_thread.h"
#include "platform/session/desktop_notice.h"

namespace kivra {

namespace {

/// Says once for each pair what can be done for it.
std::function<void(const TranslationLanguages&)> adviseOnMissingPair() {
  return [told = std::make_shared<std::set<std::string>>()](const TranslationLanguages& languages) {
    const auto [summary, remedy] = missingPair(languages);
    if (told->insert(summary).second) showDesktopNotice(summary, remedy);
  };
}

}  // namespace

LinuxTextServices::LinuxTextServices(RunLoop& runLoop, AccessibilityBus& bus, Log& log,
                                     std::function<std::function<bool()>()> pingActiveWindow,
                                     const LocalLanguageModel::Options& model)
    : accessibility(bus, runLoop, std::move(pingActiveWindow)),
      keychain({.report = [&log](std::string_view line) { log.log(line); }}),
      languageModel(httpClient, runLoop, model),
      translation(httpClient, languageRecognizer, qt::callOnMainThread,
                  {.pairIsMissing = adviseOnMissingPair()}) {}

}  // namespace kivra
