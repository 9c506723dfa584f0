#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/spelling/corrector.h"
#include "platform/spelling/spelling_index.h"

class Hunspell;

namespace kivra {

/// One loaded language: hunspell for what the dictionary allows, the index for how common a word is
/// and for corrections. To be used by one thread at a time.
class SpellingLanguage {
 public:
  /// `encoding` is the one in which `hunspell` takes its words; for `demandedOdds` see Corrector.
  SpellingLanguage(std::string name, std::unique_ptr<Hunspell> hunspell, std::string encoding,
                   std::unique_ptr<SpellingIndex> index, double demandedOdds = 0);
  ~SpellingLanguage();

  [[nodiscard]] const std::string& name() const { return name_; }

  /// Whether a word (no punctuation around it) is left alone: the dictionary has it and it is not
  /// one of the short forms that nobody uses, or the frequency lists know it well. ё and е count as
  /// the same letter; hyphenated words may be valid part by part. Words of more than
  /// `longestWord` letters are never valid.
  [[nodiscard]] bool isValid(std::u32string_view word) const;

  /// The correction of a word, see Corrector.
  [[nodiscard]] std::optional<std::string> correct(std::u32string_view word) const;

  /// Hunspell's own limit is 100; nothing longer is worth its time.
  static constexpr std::size_t longestWord = 64;

 private:
  [[nodiscard]] bool isValidWhole(std::u32string_view word) const;
  [[nodiscard]] bool isUsed(std::u32string_view word,
                            const std::optional<IndexedWord>& known) const;
  [[nodiscard]] bool isValidByParts(std::u32string_view word) const;
  [[nodiscard]] bool dictionaryHas(std::u32string_view word) const;
  [[nodiscard]] std::optional<IndexedWord> lookUp(std::u32string_view word) const;
  [[nodiscard]] bool listsKnow(std::u32string_view word, const IndexedWord& known) const;

  std::string name_;
  std::unique_ptr<Hunspell> hunspell_;
  std::string encoding_;
  std::unique_ptr<SpellingIndex> index_;
  WordFormation formation_;
  Corrector corrector_;
};

}  // namespace kivra
