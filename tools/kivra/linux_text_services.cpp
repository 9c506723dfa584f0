#include "linux_text_services.h"

#include <memory>
#include <set>

#include "platform/engines/missing_pair.h"
#include "platform/qt/main_thread.h"
#include "platform/session/desktop_notice.h"
#include "platform/x11/window_ping.h"

namespace kivra {

namespace {

/// Says once for each pair what can be done for it.
std::function<void(const TranslationLanguages&)> adviseOnMissingPair() {
  return [told = std::make_shared<std::set<std::string>>()](const TranslationLanguages& languages) {
    const auto [summary, remedy] = missingPair(languages);
    if (told->insert(summary).second) showDesktopNotice(summary, remedy);
  };
}

std::function<bool()> pingActiveWindow() {
  return [ping = std::make_shared<x11::WindowPing>()] { return ping->isPending(); };
}

}  // namespace

LinuxTextServices::LinuxTextServices(RunLoop& runLoop, AccessibilityBus& bus, Log& log,
                                     const LocalLanguageModel::Options& model)
    : accessibility(bus, runLoop, pingActiveWindow),
      keychain({.report = [&log](std::string_view line) { log.log(line); }}),
      languageModel(httpClient, runLoop, model),
      pasteboard(runLoop),
      translation(httpClient, languageRecognizer, qt::callOnMainThread,
                  {.pairIsMissing = adviseOnMissingPair()}) {}

}  // namespace kivra
