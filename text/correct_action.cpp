#include "text/correct_action.h"

#include <exception>
#include <utility>

#include "support/text.h"
#include "text/deepl_addresses.h"
#include "text/text_engine_error.h"

namespace kivra {

namespace {

constexpr const char* failureTitle = "Исправление не удалось";

Alert notConfiguredAlert(const Terms& terms) {
  const auto condition = terms.term(Term::withoutLocalModel);
  const std::string first(text::firstCharacter(condition));
  return {.messageText = "Для исправления нужен DeepL-ключ",
          .informativeText = text::uppercased(first) + condition.substr(first.size()) +
                             " исправление опечаток выполняет DeepL Write. Бесплатный API-ключ: " +
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
      tellNotConfigured(failure);
    } else {
      report("Kivra correct error: ", failure, failureTitle);
    }
  }
}

void CorrectAction::tellNotConfigured(const std::exception& failure) {
  if (std::exchange(warnedNotConfigured_, true)) {
    notify(failureTitle, failure);
  } else {
    application_.activateIgnoringOtherApps();
    const auto answer = env_.alerts.runModal(notConfiguredAlert(env_.terms));
    if (answer == alertFirstButtonReturn) env_.showSettingsWindow();
  }
  env_.alerts.beep();
}

}  // namespace kivra
