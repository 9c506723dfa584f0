#pragma once

#include <memory>
#include <optional>
#include <string>

#include "layout/undo_stack.h"
#include "platform/alerts.h"
#include "platform/log.h"
#include "platform/run_loop.h"
#include "text/text_access.h"
#include "text/text_engines.h"

namespace kivra {

/// What the two actions on the selected text have in common: one run at a time, reading, replacing
/// with an undo entry, reporting. A run goes on for as long as the action exists.
class TextAction : public std::enable_shared_from_this<TextAction> {
 public:
  struct Environment {
    TextAccess& textAccess;
    TextEngines& engines;
    UndoStack& undoStack;
    Alerts& alerts;
    Log& log;
    RunLoop& runLoop;
  };

  bool isRunning() const { return !running_.expired(); }

 protected:
  /// Kept by the one run; `isRunning` is true for as long as it exists.
  using Running = std::shared_ptr<const void>;

  explicit TextAction(const Environment& environment) : env_(environment) {}
  ~TextAction() = default;

  /// Null while a run exists.
  Running beginRun();

  /// The text to work on; beeps and answers nothing when there is none, or only blanks.
  std::optional<SelectedText> readText();

  /// Pastes `result` in place of what was read, and records how to take it back.
  void replace(const SelectedText& read, const std::string& result, UndoStack::ActionKind kind,
               std::optional<std::string> learnedToken);

  /// Logs the line and beeps.
  void report(const std::string& line);

  Environment env_;

 private:
  std::weak_ptr<const void> running_;
};

}  // namespace kivra
