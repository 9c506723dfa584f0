#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spelling/correction_odds.h"
#include "platform/spelling/slip_model.h"
#include "platform/spelling/spelling_index.h"

namespace kivra {

/// One dictionary form near a misspelled word.
struct CorrectionCandidate {
  std::string word;
  IndexedWord known;
  /// The cost of the slip (see SlipModel), and how common the word is less that cost.
  int cost = 0;
  int score = 0;
  /// False for two swapped letters in a word so short that only one letter may be changed: the word
  /// is then known not to stand for any other candidate either.
  bool isAccepted = true;
};

/// Finds the one dictionary form that a misspelled word stands for, or none rather than a poor one.
class Corrector {
 public:
  /// Works on `index`, which must outlive it, and corrects from these odds on (see CorrectionOdds).
  explicit Corrector(const SpellingIndex& index, double demandedOdds = 0)
      : index_(index), odds_(index), demandedOdds_(demandedOdds) {}

  /// The correction of a word, in the word's own letter case; nothing for words shorter than 4 or
  /// longer than 30 letters, for words in mixed case, and when no form is clearly meant. A change
  /// of case alone is no correction. For its time see bench/.
  [[nodiscard]] std::optional<std::string> correct(std::u32string_view word) const;

  /// All dictionary forms within the accepted distance, and those with two letters swapped; best
  /// score first.
  [[nodiscard]] std::vector<CorrectionCandidate> candidates(std::string_view encoded) const;

 private:
  void addSwapped(std::string_view encoded, std::vector<CorrectionCandidate>& out) const;

  const SpellingIndex& index_;
  SlipModel slips_;
  CorrectionOdds odds_;
  double demandedOdds_;
};

}  // namespace kivra
