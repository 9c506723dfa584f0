#include "platform/x11/x11_workspace.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/x11/application_identifiers.h"

namespace kivra::x11 {

namespace {

constexpr const char* activeWindow = "_NET_ACTIVE_WINDOW";
constexpr const char* className = "WM_CLASS";
constexpr std::array desktopFileNames = {"_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE",
                                         "_BAMF_DESKTOP_FILE_HINT"};

/// "/usr/share/applications/org.kde.kate.desktop" is "org.kde.kate".
std::string desktopIdentifier(std::string path) {
  constexpr std::string_view ending = ".desktop";
  path = path.substr(0, path.find('\0'));
  path = path.substr(path.rfind('/') + 1);
  if (path.ends_with(ending)) path.resize(path.size() - ending.size());
  return path;
}

/// The second of the two NUL-terminated names.
std::string windowClass(const std::string& names) {
  const auto begin = names.find('\0');
  if (begin == std::string::npos) return names;
  const auto end = names.find('\0', begin + 1);
  return names.substr(begin + 1, end == std::string::npos ? end : end - begin - 1);
}

}  // namespace

X11Workspace::X11Workspace(X11Connection& connection, Environment environment)
    : connection_(connection), environment_(std::move(environment)) {
  connection_.onPropertyChange([this](xcb_atom_t property) {
    const auto is = [&](const char* name) { return property == connection_.atom(name); };
    if (is(activeWindow) || is(className) || std::ranges::any_of(desktopFileNames, is)) {
      isKnown_ = false;
    }
    if (is(activeWindow)) environment_.activeWindowChanged();
  });
}

X11Workspace::~X11Workspace() { connection_.onPropertyChange(nullptr); }

std::optional<std::string> X11Workspace::frontmostBundleIdentifier() {
  connection_.readEvents();
  if (!isKnown_) identifier_ = readIdentifier();
  return identifier_;
}

std::optional<std::string> X11Workspace::readIdentifier() {
  // Few window trees are deeper: a client window stands within the manager's frame.
  constexpr int deepest = 16;
  // Each is watched before it is read, so that no change falls between.
  connection_.watchProperties(connection_.root(), true);
  auto window = connection_.windowProperty(connection_.root(), activeWindow);
  // Without a window manager nothing tells of a change of the focus.
  isKnown_ = window != 0;
  if (watched_ != window) {
    connection_.watchProperties(watched_, false);
    connection_.watchProperties(window, true);
    watched_ = window;
  }
  if (window == 0) window = connection_.focusWindow();
  for (int i = 0; i < deepest && window != 0 && window != connection_.root(); ++i) {
    const auto name = applicationName(window);
    if (!name.empty()) return bundleIdentifier(name);
    window = connection_.parent(window);
  }
  return std::nullopt;
}

std::string X11Workspace::applicationName(xcb_window_t window) {
  for (const auto* property : desktopFileNames) {
    if (const auto value = connection_.property(window, property)) {
      auto name = desktopIdentifier(*value);
      if (!name.empty()) return name;
    }
  }
  return windowClass(connection_.property(window, className).value_or(""));
}

}  // namespace kivra::x11
