#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "layout/undo_stack.h"
#include "platform/alerts.h"
#include "platform/log.h"
#include "platform/notifications.h"
#include "platform/run_loop.h"
#include "platform/terms.h"
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
    Notifications& notifications;
    const Terms& terms;
    std::function<void()> showSettingsWindow;
  };

  bool isRunning() const { return !running_.expired(); }

 protected:
  /// Kept by the one run; `isRunning` is true for as long as it exists.
  using Running = std::shared_ptr<const void>;

  explicit TextAction(const Environment& environment) : env_(environment) {}
  ~TextAction() = default;

  /// Null while a run exists.
  Running beginRun();

  /// The text to work on; beeps, says so and answers nothing when there is none, or only blanks.
  std::optional<SelectedText> readText();

  /// Pastes `result` in place of what was read, and records how to take it back.
  void replace(const SelectedText& read, const std::string& result, UndoStack::ActionKind kind,
               std::optional<std::string> learnedToken);

  /// Logs the failure behind `prefix`, beeps, and tells the user of it under this title.
  void report(const std::string& prefix, const std::exception& failure, const std::string& title);

  /// Tells the user, without a word of the texts that were worked on.
  void notify(const std::string& title, const std::exception& failure);

  Environment env_;

 private:
  std::weak_ptr<const void> running_;
};

}  // namespace kivra
