#pragma once

#include <span>
#include <vector>

#include "layout/exception_store.h"
#include "layout/finished_word.h"
#include "layout/history_entry.h"
#include "layout/questions.h"
#include "layout/replacement_store.h"
#include "layout/word_changer.h"

namespace kivra {

/// Applies the user's dictionary while the user types: the words just typed, the longest run first,
/// are replaced when a pattern matches them in either layout.
class ReplacementApplication {
 public:
  ReplacementApplication(const ReplacementStore& store, const ExceptionStore& exceptions,
                         const Questions& questions, WordChanger& changer)
      : store_(store), exceptions_(exceptions), questions_(questions), changer_(changer) {}

  /// `history` holds the words finished before, oldest first. True when a replacement was typed.
  bool apply(const FinishedWord& word, const std::vector<HistoryEntry>& history);

 private:
  bool applyToRun(std::span<const HistoryEntry> run, const FinishedWord& last);
  void replace(std::span<const HistoryEntry> run, const std::string& phrase,
               const std::string& replacement);

  const ReplacementStore& store_;
  const ExceptionStore& exceptions_;
  const Questions& questions_;
  WordChanger& changer_;
};

}  // namespace kivra
