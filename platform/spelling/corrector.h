#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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
  /// Works on `index`, which must outlive it.
  explicit Corrector(const SpellingIndex& index) : index_(index) {}

  /// The correction of a word, in the word's own letter case; nothing for words shorter than 4 or
  /// longer than 30 letters, for words in mixed case, and when no form is clearly meant. At most
  /// 3 ms for any word of up to 24 letters (see bench/).
  [[nodiscard]] std::optional<std::string> correct(std::u32string_view word) const;

  /// The one of a word's candidates that it is corrected to, in the word's own letter case.
  [[nodiscard]] static std::optional<std::string> choose(
      std::u32string_view word, const std::vector<CorrectionCandidate>& near);

  /// All dictionary forms within the accepted distance, and those with two letters swapped; best
  /// score first.
  [[nodiscard]] std::vector<CorrectionCandidate> candidates(std::string_view encoded) const;

 private:
  void addSwapped(std::string_view encoded, std::vector<CorrectionCandidate>& out) const;

  const SpellingIndex& index_;
  SlipModel slips_;
};

}  // namespace kivra
