#include "platform/session/address_opener.h"

#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>

namespace kivra {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view accessibilityPage = "Privacy_Accessibility";

struct SettingsProgram {
  std::string_view desktop;
  std::vector<std::string> command;
};

/// What shows the settings of accessibility, by the desktop's name.
const std::vector<SettingsProgram>& settingsPrograms() {
  static const std::vector<SettingsProgram> programs = {
      {"GNOME", {"gnome-control-center", "universal-access"}},
      {"Unity", {"unity-control-center", "universal-access"}},
      {"KDE", {"systemsettings", "kcm_access"}},
      {"XFCE", {"xfce4-accessibility-settings"}},
      {"X-Cinnamon", {"cinnamon-settings", "accessibility"}},
      {"MATE", {"mate-at-properties"}}};
  return programs;
}

/// Whether `names`, parted by colons, hold this one.
bool isNamed(std::string_view name, const std::string& names) {
  const auto whole = [](std::string_view text) { return ":" + std::string(text) + ":"; };
  return whole(names).find(whole(name)) != std::string::npos;
}

bool isOpened(std::string_view address) {
  constexpr std::array schemes = {"https://", "http://", "file:///"};
  return std::ranges::any_of(schemes,
                             [&](const char* scheme) { return address.starts_with(scheme); });
}

std::string fileAddress(const fs::path& file) {
  auto* const uri = g_filename_to_uri(file.c_str(), nullptr, nullptr);
  std::string address = uri == nullptr ? "" : uri;
  g_free(uri);
  return address;
}

bool isInPath(const std::string& program) {
  auto* const found = g_find_program_in_path(program.c_str());
  g_free(found);
  return found != nullptr;
}

/// The program keeps its signals to itself and reads them; others need theirs.
void releaseSignals(gpointer /*data*/) {
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  setsid();
}

fs::path findHelpPage() {
  constexpr const char* name = "share/kivra/permissions.html";
  std::error_code error;
  const auto program = fs::read_symlink("/proc/self/exe", error);
  for (auto folder = program.parent_path(); folder.has_relative_path();
       folder = folder.parent_path()) {
    if (fs::exists(folder / name, error)) return folder / name;
  }
  return {};
}

}  // namespace

AddressOpener AddressOpener::ofSession() {
  const auto* desktop = std::getenv("XDG_CURRENT_DESKTOP");
  return AddressOpener({.currentDesktop = desktop == nullptr ? "" : desktop,
                        .helpPage = findHelpPage(),
                        .isInstalled = isInPath});
}

std::vector<std::string> AddressOpener::command(std::string_view address) const {
  const auto openedBy = [](std::string opened) {
    return std::vector<std::string>{"xdg-open", std::move(opened)};
  };
  if (!address.starts_with(settingsAddress)) {
    return isOpened(address) ? openedBy(std::string(address)) : std::vector<std::string>{};
  }
  const auto page = address.substr(settingsAddress.size());
  if (page == accessibilityPage) {
    for (const auto& settings : settingsPrograms()) {
      if (isNamed(settings.desktop, environment_.currentDesktop) &&
          environment_.isInstalled(settings.command.front())) {
        return settings.command;
      }
    }
  }
  if (environment_.helpPage.empty()) return {};
  return openedBy(fileAddress(environment_.helpPage) + "#" + std::string(page));
}

void AddressOpener::open(std::string_view address) const {
  auto words = command(address);
  if (words.empty()) return;
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  g_spawn_async(nullptr, arguments.data(), nullptr, G_SPAWN_SEARCH_PATH, releaseSignals, nullptr,
                nullptr, nullptr);
}

}  // namespace kivra
