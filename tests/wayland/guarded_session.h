#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "hand.h"
#include "kwin_server.h"
#include "scripted_program.h"
#include "sway_server.h"
#include "text_window.h"
#include "x_session.h"

namespace kivra::e2e {

/// A compositor that is this process's as well from here on.
struct EnteredSway : SwayServer {
  explicit EnteredSway(const Options& options = {}) : SwayServer(options) { enter(); }
};

/// A compositor with a hand at its keyboard, a window that has the focus, and a program whose guard
/// is the keyboard.
struct GuardedSession {
  explicit GuardedSession(const SwayServer::Options& options = {},
                          std::optional<TextWindow::Content> content = std::nullopt)
      : sway(options), hand(mapOf("us,ru", options.xkbOptions)), window(content) {}

  /// Starts the program, anew if it runs, and waits until it hears of keys.
  ScriptedProgram& start() {
    startUnheard();
    waitFor([this] { return program->count(guard::ReportKind::wordBroken) > 0; });
    return *program;
  }
  /// For one that is told of nothing.
  ScriptedProgram& startUnheard() {
    program.reset();
    // Without an input method nobody asks applications for their fields.
    const auto entries = window.fieldEntries();
    program = std::make_unique<ScriptedProgram>(sway.environment(), sway.path("guard.log"));
    if (window.isField()) waitFor([&] { return window.fieldEntries() > entries; });
    return *program;
  }

  EnteredSway sway;
  Hand hand;
  TextWindow window;
  std::unique_ptr<ScriptedProgram> program;
};

/// The same in KWin, which starts the guard, and only where a window is a field.
struct KwinSession {
  explicit KwinSession(const TextWindow::Content& content = {}) : window(content) {
    if (content.hints == 0) waitUntilHeard();
  }

  void waitUntilHeard() const {
    waitFor([this] { return program.count(guard::ReportKind::wordBroken) > 0; });
  }

  KwinServer kwin;
  ScriptedProgram program{kwin.acceptGuard()};
  Hand hand;
  TextWindow window;
};

/// What the keys of the characters type in this group of "us,ru".
std::string typedIn(std::uint32_t group, std::string_view characters);

/// So many words that are each typed in the wrong layout.
std::string misplacedWords(int count);

}  // namespace kivra::e2e
