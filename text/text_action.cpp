#include "text/text_action.h"

#include <utility>

#include "support/text.h"
#include "text/text_engine_error.h"

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
  env_.notifications.show(
      {.title = "Нет текста", .text = "Нужен выделенный текст или курсор в поле с текстом."});
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

void TextAction::report(const std::string& prefix, const std::exception& failure,
                        const std::string& title) {
  env_.log.log(prefix + failure.what());
  env_.alerts.beep();
  notify(title, failure);
}

void TextAction::notify(const std::string& title, const std::exception& failure) {
  const auto* const error = dynamic_cast<const TextEngineError*>(&failure);
  Notification notification{.title = title,
                            .text = error == nullptr ? failure.what() : error->summary()};
  if (error != nullptr && error->isMendedInSettings()) {
    notification.button = "Открыть настройки…";
    notification.action = env_.showSettingsWindow;
  }
  env_.notifications.show(std::move(notification));
}

}  // namespace kivra
