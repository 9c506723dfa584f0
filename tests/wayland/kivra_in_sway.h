#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "guarded_session.h"
#include "platform/wayland/client/toplevel_watch.h"
#include "session_bus.h"

namespace kivra::e2e {

/// A session of sway with a hand at the keyboard, in which the real program and its guard run.
class KivraInSway {
 public:
  /// In a sway with these lines of configuration as well.
  explicit KivraInSway(const std::string& moreConfig = "");

  /// Starts the program and waits until it corrects; std::runtime_error when it does not.
  void startKivra(const std::vector<std::string>& command = {KIVRA_PROGRAM});
  ChildProcess& kivra() { return *kivra_; }
  std::string kivraLog() const { return sway.readFile("kivra.log"); }

  /// Opens a program's window and waits until it has the focus; by how its application id begins.
  std::unique_ptr<ChildProcess> open(const std::vector<std::string>& command,
                                     const std::string& application, const std::string& log = "");
  /// Whether the application's window has the focus, or soon has.
  bool getsFocus(const std::string& application);

  /// What the program prints, without errors.
  std::string run(const std::vector<std::string>& command) const {
    return outputOf(command, sway.environment());
  }

  /// Types "ghbdtn " until it has been mended, as `isMended` finds out: a window that has just been
  /// opened may move the focus to its field in the middle of a word.
  bool mends(const std::function<bool()>& isMended);
  /// Presses keys together, the last one briefly.
  void chord(const std::vector<std::uint16_t>& keys);
  /// The whole text of the focused editor, which puts it on the clipboard; empty as well when it
  /// does not within 2 s.
  std::string copyAll();
  /// Waits until the file is this, or five seconds.
  std::string written(const std::string& file, const std::string& expected) const;

  EnteredSway sway;
  Hand hand;

 private:
  SessionBus bus_{sway.path("."), sway.environment()};
  wayland::Connection compositor_;
  wayland::ToplevelWatch toplevels_{compositor_};
  std::unique_ptr<ChildProcess> kivra_;
};

}  // namespace kivra::e2e
