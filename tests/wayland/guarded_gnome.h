#pragma once

#include <memory>

#include "gnome_server.h"
#include "hand.h"
#include "scripted_program.h"
#include "text_window.h"
#include "x_session.h"

namespace kivra::e2e {

/// A GNOME Shell with a hand at its keyboard, a field that has the focus, and a program whose guard
/// is the keyboard.
struct GuardedGnome {
  explicit GuardedGnome(const TextWindow::Content& content = {}) : window(content) {}

  /// Starts the program, anew if it runs, and waits until it hears of keys.
  ScriptedProgram& start() {
    startUnheard();
    waitFor([this] { return program->count(guard::ReportKind::wordBroken) > 0; });
    return *program;
  }
  /// For one that is told of nothing.
  ScriptedProgram& startUnheard() {
    program.reset();
    program = std::make_unique<ScriptedProgram>(gnome.environment(), gnome.path("guard.log"));
    waitFor([this] { return gnome.engine() == "kivra"; });
    return *program;
  }

  GnomeServer gnome;
  Hand hand;
  TextWindow window;
  std::unique_ptr<ScriptedProgram> program;
};

}  // namespace kivra::e2e
