#include "linux_desktop.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "platform/qt/main_thread.h"
#include "platform/qt/qt_application.h"

namespace kivra {

namespace {

constexpr const char* accessibilityMissing =
    "Служба специальных возможностей (AT-SPI) не отвечает или выключена. Включить: "
    "busctl --user set-property org.a11y.Bus /org/a11y/bus org.a11y.Status IsEnabled b true";

}  // namespace

LinuxDesktop::LinuxDesktop(std::string guardProgram, const LocalLanguageModel::Options& model)
    : application_([] { qt::QtApplication::exit(EXIT_SUCCESS); }),
      defaults_(userDefaultsPath(), [this](std::string_view line) { log_.log(line); }),
      layoutKeepers_(qt::callOnMainThread),
      x11_({.runLoop = runLoop_,
            .log = log_,
            .watchFd =
                [this](int fd, std::function<void()> onReadable) {
                  return runLoop_.watch(fd, std::move(onReadable));
                },
            .guardProgram = std::move(guardProgram),
            .isPasswordFocused = [this] { return accessibility_.isPasswordFocused(); },
            .activeWindowChanged = [this] { accessibility_.meetApplications(); },
            .hasSelectionBehind =
                [this](std::size_t characters) {
                  return accessibility_.hasSelectionBehind(characters);
                },
            .open = [this](std::string_view address) { opener_.open(address); },
            .groupSelected = [this](std::uint32_t group) { layoutKeepers_.selectGroup(group); },
            .isTakenByOwnWindow = [this](const Event& event) { return takeKey(event); },
            .connectionLost =
                [this] {
                  reportLostServer();
                  qt::QtApplication::exit(EXIT_FAILURE);
                }}),
      text_(runLoop_, accessibility_, log_, model),
      notifications_(qt::callOnMainThread) {
  spellChecker_.load();
  qt::QtApplication::setDisplayLostHandler([this] { reportLostServer(); });
}

// The program and its windows have a connection each, and either may notice first.
void LinuxDesktop::reportLostServer() {
  if (std::exchange(isLostServerReported_, true)) return;
  log_.log("Kivra: связь с X-сервером потеряна, выходим");
}

Platform LinuxDesktop::platform() {
  return {.accessibility = text_.accessibility,
          .alerts = alerts_,
          .application = application_,
          .clock = clock_,
          .defaults = defaults_,
          .eventPosting = x11_.eventPosting,
          .eventTaps = x11_.eventTaps,
          .httpClient = text_.httpClient,
          .inputSources = x11_.inputSources,
          .keychain = text_.keychain,
          .languageModel = text_.languageModel,
          .languageRecognizer = text_.languageRecognizer,
          .localKeyMonitors = localKeyMonitors_,
          .locale = text_.locale,
          .log = log_,
          .notifications = notifications_,
          .pasteboard = text_.pasteboard,
          .privacy = *this,
          .runLoop = runLoop_,
          .spellChecker = spellChecker_,
          .statusBar = statusBar_,
          .terms = terms_,
          .translation = text_.translation,
          .windows = windows_,
          .workspace = x11_.workspace};
}

bool LinuxDesktop::isProcessTrusted() {
  const auto isTrusted = accessibility_.isEnabled();
  reportMissing(reportedAccessibility_,
                isTrusted ? "" : std::string("Kivra: ") + accessibilityMissing);
  return isTrusted;
}

bool LinuxDesktop::isProcessTrustedWithOptions(bool prompt) {
  const auto isTrusted = isProcessTrusted();
  if (prompt && !isTrusted) accessibility_.requestEnabled();
  return isTrusted;
}

std::string LinuxDesktop::accessibilityRemedy() { return accessibilityMissing; }

AccessType LinuxDesktop::checkAccess() {
  const auto isGranted = x11_.connect();
  reportMissing(reportedInput_, isGranted ? "" : "Kivra: клавиатуру не видно: " + x11_.problem());
  return isGranted ? AccessType::granted : AccessType::denied;
}

std::string LinuxDesktop::keyboardProblem() const {
  return "Клавиатуру не видно: " + x11_.problem();
}

std::string LinuxDesktop::impediment() {
  if (!x11_.connect()) {
    return x11_.isWaylandSession() ? "Сеанс Wayland: войдите в сеанс X11 (Xorg)"
                                   : keyboardProblem();
  }
  if (!accessibility_.isEnabled()) return "Специальные возможности (AT-SPI) выключены";
  if (!x11_.isGuardRunning()) return "Сторож клавиатуры не работает: перезапустите Kivra";
  return missingLayouts();
}

// The layouts are looked for once: one that comes later needs a new start.
std::string LinuxDesktop::missingLayouts() {
  const auto sources = x11_.inputSources.createInputSourceList();
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
  return localKeyMonitors_.isMonitoring() && x11_.workspace.isOwnWindowInFront() &&
         localKeyMonitors_.take(event);
}

void LinuxDesktop::reportMissing(std::string& reported, const std::string& missing) {
  if (!missing.empty() && missing != reported) log_.log(missing);
  reported = missing;
}

}  // namespace kivra
