#pragma once

#include <string_view>

#include "platform/spelling/letter_code.h"
#include "platform/spelling/spelling_index.h"
#include "platform/spelling/word_formation.h"

namespace kivra {

/// What speaks for and against the correction of one word to the best of its candidates.
struct CorrectionEvidence {
  std::string_view typed;  ///< encoded
  std::string_view meant;  ///< encoded
  LetterCase typedCase = LetterCase::lower;
  LetterCase meantCase = LetterCase::lower;  ///< in which the dictionary writes it
  int commonness = 0;                        ///< of the candidate; see Corrector
  int cost = 0;                              ///< of the slip; see SlipModel
  int lead = 0;                              ///< of the candidate's score over the next one's
};

/// Weighs whether a word that the dictionary lacks is a slip of the best candidate, or rather of
/// another one, or else no slip but a word by itself.
class CorrectionOdds {
 public:
  /// Works on `index`, which must outlive it.
  explicit CorrectionOdds(const SpellingIndex& index) : index_(index), formation_(index) {}

  /// The logarithm of the odds, in nats; the scale is such that 0 is the point at which Kivra
  /// corrects.
  [[nodiscard]] double of(const CorrectionEvidence& evidence) const;

  /// True for a word that is never corrected, whatever is near it.
  [[nodiscard]] bool isLeftAlone(std::string_view typed) const;

 private:
  const SpellingIndex& index_;
  WordFormation formation_;
};

}  // namespace kivra
