#include "text/correct_action.h"

#include <exception>
#include <utility>

#include "support/text.h"
#include "text/deepl_addresses.h"
#include "text/text_engine_error.h"

namespace kivra {

namespace {

Alert notConfiguredAlert() {
  return {.messageText = "Для исправления нужен DeepL-ключ",
          .informativeText =
              std::string("На этой версии macOS исправление опечаток выполняет DeepL Write. "
                          "Бесплатный API-ключ: ") +
              deepl_addresses::freeKeyPage + " → вставь его в Настройки → Перевод.",
          .buttons = {"Открыть настройки…", "Позже"}};
}

bool isNotConfigured(const std::exception& failure) {
  const auto* error = dynamic_cast<const TextEngineError*>(&failure);
  return error != nullptr && error->kind() == TextEngineError::Kind::notConfigured;
}

}  // namespace

void CorrectAction::run() {
  if (auto running = beginRun()) {
    startTask(env_.runLoop, weak_from_this(), correctSelection(std::move(running)));
  }
}

Task<void> CorrectAction::correctSelection(Running /*running*/) {
  try {
    const auto read = readText();
    if (!read || exceptions_.contains(text::lowercased(read->text))) co_return;
    const auto result = co_await env_.engines.corrector().correct(read->text);
    if (result.empty() || result == read->text) co_return;
    replace(*read, result, UndoStack::ActionKind::correct, read->text);
  } catch (const std::exception& failure) {
    if (isNotConfigured(failure)) {
      showNotConfiguredAlert();
    } else {
      report(std::string("Kivra correct error: ") + failure.what());
    }
  }
}

void CorrectAction::showNotConfiguredAlert() {
  if (!std::exchange(warnedNotConfigured_, true)) {
    application_.activateIgnoringOtherApps();
    const auto answer = env_.alerts.runModal(notConfiguredAlert());
    if (answer == alertFirstButtonReturn && showSettingsWindow_) showSettingsWindow_();
  }
  env_.alerts.beep();
}

}  // namespace kivra
