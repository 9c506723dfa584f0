#include "linux_desktop.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "platform/qt/main_thread.h"
#include "platform/qt/qt_application.h"
#include "platform/session/diagnosis.h"
#include "platform/session/notifier_host.h"
#include "session_choice.h"

namespace kivra {

namespace {

std::string accessibilityMissing() {
  return std::string(
             "Служба специальных возможностей (AT-SPI) не отвечает или выключена. Включить: ") +
         accessibilityCommand;
}

}  // namespace

LinuxDesktop::LinuxDesktop(std::string guardProgram, const LocalLanguageModel::Options& model)
    : application_([] { qt::QtApplication::exit(EXIT_SUCCESS); }),
      defaults_(userDefaultsPath(), [this](std::string_view line) { log_.log(line); }),
      layoutKeepers_(qt::callOnMainThread),
      session_(openSession(sessionEnvironment(std::move(guardProgram)))),
      text_(
          runLoop_, accessibility_, log_, [this] { return session_->pingActiveWindow(); }, model),
      alerts_([this](auto window) { session_->activateWindow(window); }),
      notifications_(qt::callOnMainThread),
      windows_([this](auto window) { session_->activateWindow(window); }) {
  spellChecker_.load();
  qt::QtApplication::setDisplayLostHandler([this] { reportLostDisplay(); });
  session_->connect();
  reportMissing();
}

guard::KeyboardSession::Environment LinuxDesktop::sessionEnvironment(std::string guardProgram) {
  return {
      .runLoop = runLoop_,
      .log = log_,
      .watchFd =
          [this](int fd, std::function<void()> onReadable) {
            return runLoop_.watch(fd, std::move(onReadable));
          },
      .guardProgram = std::move(guardProgram),
      .isPasswordFocused = [this] { return accessibility_.isPasswordFocused(); },
      .activeWindowChanged = [this] { accessibility_.meetApplications(); },
      .hasSelectionBehind =
          [this](std::size_t characters) { return accessibility_.hasSelectionBehind(characters); },
      .lastCaretMove = [this] { return accessibility_.lastCaretMove(); },
      .open = [this](std::string_view address) { opener_.open(address); },
      .groupSelected = [this](std::uint32_t group) { layoutKeepers_.selectGroup(group); },
      .isTakenByOwnWindow = [this](const Event& event) { return takeKey(event); },
      .connectionLost =
          [this] {
            reportLostDisplay();
            qt::QtApplication::exit(EXIT_FAILURE);
          }};
}

// The program and its windows have a connection each, and either may notice first.
void LinuxDesktop::reportLostDisplay() {
  if (std::exchange(isLostDisplayReported_, true)) return;
  log_.log("Kivra: связь с дисплеем потеряна, выходим");
}

Platform LinuxDesktop::platform() {
  return {.accessibility = text_.accessibility,
          .alerts = alerts_,
          .application = application_,
          .clock = clock_,
          .defaults = defaults_,
          .eventPosting = session_->eventPosting(),
          .eventTaps = session_->eventTaps(),
          .httpClient = text_.httpClient,
          .inputSources = session_->inputSources(),
          .keychain = text_.keychain,
          .languageModel = text_.languageModel,
          .languageRecognizer = text_.languageRecognizer,
          .localKeyMonitors = localKeyMonitors_,
          .locale = text_.locale,
          .log = log_,
          .notifications = notifications_,
          .pasteboard = session_->pasteboard(),
          .privacy = *this,
          .runLoop = runLoop_,
          .spellChecker = spellChecker_,
          .statusBar = statusBar_,
          .terms = terms_,
          .translation = text_.translation,
          .windows = windows_,
          .workspace = session_->workspace()};
}

bool LinuxDesktop::hasTray() { return session_->systemTray() || hasNotifierHost(); }

bool LinuxDesktop::isProcessTrusted() { return accessibility_.isEnabled(); }

bool LinuxDesktop::isProcessTrustedWithOptions(bool prompt) {
  const auto isTrusted = isProcessTrusted();
  if (prompt && !isTrusted) accessibility_.requestEnabled();
  return isTrusted;
}

std::string LinuxDesktop::accessibilityRemedy() { return accessibilityMissing(); }

AccessType LinuxDesktop::checkAccess() {
  return session_->problem().empty() ? AccessType::granted : AccessType::denied;
}

bool LinuxDesktop::requestAccess() { return session_->request(); }

std::string LinuxDesktop::inputMonitoringRemedy() {
  return "Клавиатуру не видно: " + session_->problem();
}

std::string LinuxDesktop::impediment() {
  if (const auto impediment = session_->impediment(); !impediment.empty()) {
    return "Клавиатуру не видно: " + impediment;
  }
  if (!accessibility_.isEnabled()) return "Специальные возможности (AT-SPI) выключены";
  if (!session_->isGuardRunning()) return "Сторож клавиатуры не работает: перезапустите Kivra";
  return missingLayouts();
}

std::vector<std::string> LinuxDesktop::diagnosis() {
  SessionFacts facts{.display = displayName(),
                     .problem = session_->problem(),
                     .isGuardRunning = session_->isGuardRunning(),
                     .isAccessibilityOn = accessibility_.isEnabled(),
                     .hasSecrets = hasSecretsService(),
                     .hasTray = hasTray()};
  session_->tell(facts);
  if (const auto sources = session_->inputSources().createInputSourceList()) {
    for (const auto& source : *sources) {
      facts.layouts.push_back(source->id);
      if (source->languages) facts.languages.push_back(source->languages->front());
    }
  }
  return kivra::diagnosis(facts);
}

// The layouts are looked for once: one that comes later needs a new start.
std::string LinuxDesktop::missingLayouts() {
  const auto sources = session_->inputSources().createInputSourceList();
  const auto isMissing = [&](const char* language) {
    return !sources || std::ranges::none_of(*sources, [&](const auto& source) {
      return source->languages && !source->languages->empty() &&
             source->languages->front() == language;
    });
  };
  const auto noRussian = isMissing("ru");
  const auto noEnglish = isMissing("en");
  if (!noRussian && !noEnglish) return {};
  const auto* const which = noRussian && noEnglish ? "русской и английской раскладок"
                            : noRussian ? "русской раскладки"
                                        : "английской раскладки";
  return std::string("Нет ") + which + ": добавьте и перезапустите Kivra";
}

bool LinuxDesktop::takeKey(const Event& event) {
  return localKeyMonitors_.isMonitoring() && session_->isOwnWindowInFront() &&
         localKeyMonitors_.take(event);
}

void LinuxDesktop::reportMissing() {
  if (!accessibility_.isEnabled()) log_.log("Kivra: " + accessibilityMissing());
  if (const auto problem = session_->problem(); !problem.empty()) {
    log_.log("Kivra: клавиатуру не видно: " + problem);
  }
}

}  // namespace kivra
