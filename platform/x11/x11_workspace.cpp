#include "platform/x11/x11_workspace.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/session/application_identifiers.h"
#include "platform/xkb/key_map.h"
#include "platform/xkb/virtual_keys.h"

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
  readFrontmost();
  return identifier_;
}

bool X11Workspace::isOwnWindowInFront() {
  readFrontmost();
  return isOwn_;
}

void X11Workspace::readFrontmost() {
  connection_.readEvents();
  if (isKnown_) return;
  identifier_.reset();
  isOwn_ = false;
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
    if (!name.empty()) {
      identifier_ = bundleIdentifier(name);
      isOwn_ = isOfThisProcess(window);
      return;
    }
    window = connection_.parent(window);
  }
}

bool X11Workspace::isOfThisProcess(xcb_window_t window) {
  // A number as wide as a window's.
  return connection_.windowProperty(window, "_NET_WM_PID") == static_cast<xcb_window_t>(::getpid());
}

std::string X11Workspace::shortcutOwner(const KeyChord& keys) {
  constexpr std::pair<std::uint64_t, std::uint16_t> masks[] = {
      {event_flags::shift, XCB_MOD_MASK_SHIFT},
      {event_flags::control, XCB_MOD_MASK_CONTROL},
      {event_flags::option, XCB_MOD_MASK_1},
      {event_flags::command, XCB_MOD_MASK_4}};
  const auto key = evdevCode(keys.keyCode);
  if (!key) return {};
  std::uint16_t modifiers = 0;
  for (const auto& [flag, mask] : masks) {
    if ((keys.flags & flag) != 0) modifiers = static_cast<std::uint16_t>(modifiers | mask);
  }
  // The server does not tell whose it is.
  return connection_.isKeyGrabbed(static_cast<xcb_keycode_t>(*key + xkbOffset), modifiers)
             ? "или у самого рабочего стола"
             : "";
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
