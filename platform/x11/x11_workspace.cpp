#include "platform/x11/x11_workspace.h"

#include "platform/x11/application_identifiers.h"

namespace kivra::x11 {

namespace {

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

std::optional<std::string> X11Workspace::frontmostBundleIdentifier() {
  // Few window trees are deeper: a client window stands within the manager's frame.
  constexpr int deepest = 16;
  auto window = connection_.windowProperty(connection_.root(), "_NET_ACTIVE_WINDOW");
  if (window == 0) window = connection_.focusWindow();
  for (int i = 0; i < deepest && window != 0 && window != connection_.root(); ++i) {
    const auto name = applicationName(window);
    if (!name.empty()) return bundleIdentifier(name);
    window = connection_.parent(window);
  }
  return std::nullopt;
}

std::string X11Workspace::applicationName(xcb_window_t window) {
  for (const auto* property :
       {"_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE", "_BAMF_DESKTOP_FILE_HINT"}) {
    if (const auto value = connection_.property(window, property)) {
      auto name = desktopIdentifier(*value);
      if (!name.empty()) return name;
    }
  }
  return windowClass(connection_.property(window, "WM_CLASS").value_or(""));
}

}  // namespace kivra::x11
