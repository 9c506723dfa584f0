#pragma once

#include <string>
#include <vector>

#include "kivra_session.h"
#include "screen_reader.h"
#include "tray_host.h"

namespace kivra::e2e {

inline const std::string& busOf(const XSession& session) {
  return session.environment().at("DBUS_SESSION_BUS_ADDRESS");
}

/// The titles of the menu's entries, empty for a line.
inline std::vector<std::string> labels(const TrayHost& host) {
  std::vector<std::string> all;
  for (const auto& entry : host.menu()) all.push_back(entry.label);
  return all;
}

/// A session with a tray host in which Kivra runs, and its settings window open.
struct OpenSettings : KivraSession {
  explicit OpenSettings(const XSession::Options& options = {}) : KivraSession(options) {
    host.waitForItem();
    host.choose("Настройки…");
    reader.waitFor("page tab", "Общие");
  }

  /// Waits for the window manager as well: a change of windows forgets the word begun before it.
  void returnToEditor() {
    session.run({"xdotool", "windowactivate", "--sync", std::to_string(window.window())});
    window.focus();
    window.clear();
  }

  void activate() {
    session.run({"xdotool", "search", "--sync", "--name", "настройки", "windowactivate", "--sync"});
  }

  void showTab(const std::string& name) { reader.press(reader.waitFor("page tab", name)); }

  TrayHost host{busOf(session)};
  ScreenReader reader{busOf(session), "Kivra"};
};

}  // namespace kivra::e2e
