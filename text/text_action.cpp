#include "text/text_action.h"

#include <utility>

#include "support/text.h"

namespace kivra {

TextAction::Running TextAction::beginRun() {
  if (isRunning()) return nullptr;
  Running running = std::make_shared<bool>(true);
  running_ = running;
  return running;
}

std::optional<SelectedText> TextAction::readText() {
  auto read = env_.textAccess.readSelection();
  if (read && !text::trimmed(read->text).empty()) return read;
  env_.alerts.beep();
  return std::nullopt;
}

void TextAction::replace(const SelectedText& read, const std::string& result,
                         UndoStack::ActionKind kind, std::optional<std::string> learnedToken) {
  if (read.isSelection) {
    env_.textAccess.replaceSelection(result);
  } else {
    env_.textAccess.replaceField(result);
  }
  env_.undoStack.setLast({kind, std::move(learnedToken), env_.textAccess.undoOfPaste()});
}

void TextAction::report(const std::string& line) {
  env_.log.log(line);
  env_.alerts.beep();
}

}  // namespace kivra
