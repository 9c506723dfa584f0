#include "session_control.h"

#include <chrono>
#include <utility>

#include "app/core_controller.h"
#include "control.h"
#include "platform/application.h"
#include "platform/defaults/sqlite_defaults_database.h"
#include "platform/input_sources.h"
#include "platform/qt/main_thread.h"
#include "platform/run_loop.h"
#include "platform/session/application_identifiers.h"
#include "platform/session/desktop_notice.h"
#include "platform/workspace.h"

namespace kivra {

namespace {

constexpr std::chrono::seconds trayPatience(5);

std::vector<std::pair<std::string, std::string>> enabledLayouts(InputSources& inputSources) {
  std::vector<std::pair<std::string, std::string>> layouts;
  const auto sources = inputSources.createInputSourceList();
  if (!sources) return layouts;
  for (const auto& source : *sources) {
    const auto isKnown = source->languages && !source->languages->empty();
    layouts.emplace_back(source->id, isKnown ? source->languages->front() : "");
  }
  return layouts;
}

control::State stateOf(Services& services) {
  auto& permissions = services.permissions();
  permissions.refresh();
  control::State state{.isIntercepting = services.coreController().isIntercepting()};
  const auto note = [&state](const std::string& line) {
    if (!line.empty()) state.missing.push_back(line);
  };
  if (!permissions.accessibilityGranted()) note(permissions.accessibilityRemedy());
  if (!permissions.inputMonitoringGranted()) note(permissions.inputMonitoringRemedy());
  note(permissions.impediment());
  state.diagnosis = permissions.diagnosis();
  return state;
}

control::RunningProgram runningProgram(KivraApp& app) {
  auto& delegate = *app.delegate;
  auto& services = app.services;
  return {.showSettings = [&delegate] { delegate.showSettingsWindow(); },
          .quit = [&services] { services.platform.application.terminate(); },
          .setEnabled = [&delegate](bool isEnabled) { delegate.setEnabled(isEnabled); },
          .pause =
              [&](std::chrono::seconds duration) {
                services.pause().begin(
                    duration, [&delegate](bool isEnabled) { delegate.setEnabled(isEnabled); });
              },
          .layouts = [&services] { return enabledLayouts(services.platform.inputSources); },
          .state = [&services] { return stateOf(services); }};
}

}  // namespace

SessionControl::SessionControl(KivraApp& app)
    : app_(app),
      service_(
          qt::callOnMainThread,
          {.activate = [this] { app_.delegate->showSettingsWindow(); },
           .run = [this](const auto& words, const auto& input) { return run(words, input); }}) {}

CommandReply SessionControl::run(const std::vector<std::string>& words, const std::string& input) {
  auto& services = app_.services;
  auto& defaults = services.platform.defaults;
  const auto running = runningProgram(app_);
  const auto replacements = [&services]() -> ReplacementStore& { return services.replacements(); };
  const auto frontmost = [&services] {
    return services.platform.workspace.frontmostBundleIdentifier();
  };
  const auto isSaved = [&defaults] {
    return dynamic_cast<SqliteDefaultsDatabase&>(defaults).isSaved();
  };
  const auto reply = control::carryOut({.settings = services.settings(),
                                        .exceptions = services.exceptions(),
                                        .replacements = replacements,
                                        .frontmostIdentifier = frontmost,
                                        .identifierOf = bundleIdentifier,
                                        .namesOf = programNames,
                                        .isSaved = isSaved,
                                        .running = &running},
                                       {words, input});
  return {reply.status, reply.output, reply.message};
}

void SessionControl::noticeMissingTray(std::function<bool()> hasTray) {
  app_.services.platform.runLoop.asyncAfter(trayPatience, [hasTray = std::move(hasTray)] {
    if (hasTray()) return;
    showDesktopNotice("Kivra работает",
                      "Области уведомлений нет, значка не видно. Настройки: запустите Kivra ещё "
                      "раз, или в терминале: kivractl settings");
  });
}

}  // namespace kivra
