#include "text/translate_action.h"

#include <exception>
#include <map>
#include <string_view>
#include <utility>

#include "support/text.h"

namespace kivra {

namespace {

constexpr std::size_t recognizedCharacters = 400;

std::string baseLanguage(std::string_view code) { return text::lowercased(text::prefix(code, 2)); }

/// The target for a user whose system speaks this language.
std::string targetForSystemLanguage(const std::string& language, const std::string& fallback) {
  static const std::map<std::string, std::string> targets = {
      {"ru", "RU"}, {"en", "EN-US"}, {"de", "DE"}, {"uk", "UK"},    {"fr", "FR"}, {"es", "ES"},
      {"it", "IT"}, {"pl", "PL"},    {"nl", "NL"}, {"pt", "PT-PT"}, {"zh", "ZH"},
  };
  const auto found = targets.find(language);
  return found == targets.end() ? fallback : found->second;
}

}  // namespace

void TranslateAction::run(const std::string& target) {
  if (auto running = beginRun()) {
    startTask(env_.runLoop, weak_from_this(), translateSelection(target, std::move(running)));
  }
}

Task<void> TranslateAction::translateSelection(std::string requested, Running /*running*/) {
  try {
    const auto read = readText();
    if (!read) co_return;
    const auto target = resolveTarget(read->text, requested);
    const auto result = co_await translateWithFallback(read->text, target);
    if (result == read->text) co_return;
    replace(*read, result, UndoStack::ActionKind::translate, std::nullopt);
  } catch (const std::exception& failure) {
    report("Kivra translate error: ", failure, "Перевод не удался");
  }
}

std::string TranslateAction::resolveTarget(const std::string& text, const std::string& requested) {
  const auto dominant = recognizer_.dominantLanguage(text::prefix(text, recognizedCharacters));
  const auto asked = baseLanguage(requested);
  if (!dominant || !text::lowercased(*dominant).starts_with(asked)) return requested;
  const std::string fallback = asked == "ru" ? "EN-US" : "RU";
  const auto preferred = locale_.preferredLanguages();
  const auto system = baseLanguage(preferred.empty() ? "ru" : preferred.front());
  return system == asked ? fallback : targetForSystemLanguage(system, fallback);
}

Task<std::string> TranslateAction::translateWithFallback(std::string text, std::string target) {
  std::exception_ptr failure;
  try {
    co_return co_await env_.engines.translator().translate(text, target, std::nullopt);
  } catch (const std::exception&) {
    failure = std::current_exception();
  }
  auto* const fallback = env_.engines.deepLFallback();
  if (fallback == nullptr) std::rethrow_exception(failure);
  co_return co_await fallback->translate(text, target, std::nullopt);
}

}  // namespace kivra
