#include "layout/replacement_application.h"

#include <algorithm>
#include <string>

#include "platform/events.h"
#include "support/text.h"

namespace kivra {

namespace {

/// The words of the run read in the layout, with single spaces between them.
std::string phraseOf(std::span<const HistoryEntry> run, const Layout& layout) {
  std::string phrase;
  for (std::size_t i = 0; i < run.size(); ++i) {
    if (i > 0) phrase += ' ';
    phrase += KeycodeMap::text(run[i].word, layout);
  }
  return phrase;
}

}  // namespace

bool ReplacementApplication::apply(const FinishedWord& word,
                                   const std::vector<HistoryEntry>& history) {
  if (store_.index().empty()) return questions_.ask(Question::dictionary, false, word.typed);
  auto candidates = history;
  candidates.push_back({word.word, word.trigger});
  for (std::size_t start = 0; start < candidates.size(); ++start) {
    if (applyToRun(std::span(candidates).subspan(start), word)) return true;
  }
  return false;
}

bool ReplacementApplication::applyToRun(std::span<const HistoryEntry> run,
                                        const FinishedWord& last) {
  const auto joinedBySpaces = std::ranges::all_of(
      run.first(run.size() - 1),
      [](const HistoryEntry& entry) { return entry.trigger == Keystroke{key_codes::space}; });
  if (!joinedBySpaces) return false;
  const auto phrase = phraseOf(run, last.from);
  const auto token = text::lowercased(phrase);
  if (questions_.ask(Question::learned, exceptions_.contains(token), token)) return false;
  for (const auto* layout : {&last.from, &last.to}) {
    const auto reading = phraseOf(run, *layout);
    const auto replacement = store_.lookup(reading);
    const auto isReplaced = replacement && *replacement != phrase;
    if (!questions_.ask(Question::dictionary, isReplaced, reading)) continue;
    replace(run, phrase, *replacement);
    return true;
  }
  return false;
}

void ReplacementApplication::replace(std::span<const HistoryEntry> run, const std::string& phrase,
                                     const std::string& replacement) {
  std::size_t typedCharacters = run.size() - 1;  // the Spaces between the words
  for (const auto& entry : run) typedCharacters += entry.word.size();
  changer_.change(
      UndoStack::ActionKind::replacement, phrase,
      {.deletes = typedCharacters, .text = replacement, .words = {{Word{}, run.back().trigger}}},
      {.deletes = text::characterCount(replacement) + 1, .words = {run.begin(), run.end()}});
}

}  // namespace kivra
