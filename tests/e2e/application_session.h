#pragma once

#include <memory>
#include <string>
#include <vector>

#include "typist.h"
#include "x_session.h"

namespace kivra::e2e {

/// A session in which people's applications run beside Kivra, which corrects in all of them.
class ApplicationSession {
 public:
  explicit ApplicationSession(const XSession::Options& options = {}) : session(options) {}

  /// Throws std::runtime_error when the program, started by the command, corrects nothing.
  void startKivra(const std::vector<std::string>& command = {KIVRA_PROGRAM});

  /// These wait for the window to have the focus; std::runtime_error when it does not get it.
  void openGtkEditor();
  void openPlainGtkEditor();
  void openQtEditor();
  void openQt6Editor();
  /// A page with this body, whose title becomes "ready"; without one, a field to write in.
  void openChromium(const std::string& body = "", const std::vector<std::string>& options = {});
  void openTerminal(const std::string& shellCommand);
  /// Any program, by a part of its window's class; its output goes to the file `log`.
  void open(const std::vector<std::string>& command, const std::string& windowClass,
            const std::string& log = "");

  /// Puts the whole text of the focused field on the clipboard and answers it.
  std::string copyAll();

  /// The title of the active window.
  std::string windowName() { return session.run({"xdotool", "getactivewindow", "getwindowname"}); }

  void set(const std::string& key, const std::vector<std::string>& value);
  void press(const std::string& chord) { Typist(session).chord(chord); }

  XSession session;

 private:
  void openEditor(const std::vector<std::string>& command, const std::string& windowClass);
  bool hasFocus(const std::string& windowClass);
  void waitUntilCorrecting();

  std::unique_ptr<ChildProcess> application_;
  int editors_ = 0;  // opened so far
};

}  // namespace kivra::e2e
