#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/slip_model.h"
#include "platform/linux/spelling_index.h"

namespace kivra {

/// One dictionary form near a misspelled word.
struct CorrectionCandidate {
  std::string word;
  IndexedWord known;
  /// The cost of the slip, and the word's frequency level less that cost.
  int cost = 0;
  int score = 0;
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

  /// All dictionary forms within the accepted distance, best score first; for tools and tests.
  [[nodiscard]] std::vector<CorrectionCandidate> candidates(std::string_view encoded) const;

 private:
  const SpellingIndex& index_;
  SlipModel slips_;
};

}  // namespace kivra
