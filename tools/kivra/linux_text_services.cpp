#include "linux_text_services.h"

#include <memory>

#include "platform/qt/main_thread.h"
#include "platform/x11/window_ping.h"

namespace kivra {

namespace {

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
      translation(httpClient, languageRecognizer, qt::callOnMainThread) {}

}  // namespace kivra
