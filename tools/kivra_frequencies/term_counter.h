#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/spelling/word_frequencies.h"

namespace kivra {

/// One word that several documents use.
struct Term {
  std::string code;  ///< see letter_code.h, ё folded into е
  double share = 0;  ///< of all words of the documents
  /// As in WordFrequency; counted only in three documents or more, where a slip hardly stands.
  std::uint8_t seen = 0;
};

/// Finds the terms of a trade in texts about it: words that stand in at least two documents, and
/// three times in all.
class TermCounter {
 public:
  /// Counts the words of four letters or more in a text whose documents have form feeds between
  /// them. What touches a sign that words do not have next to them ("_Файл", "MAP_FIXED", "e-mail")
  /// is a piece of something else. The bytes between texts in a message catalogue do no harm.
  void add(std::string_view text);

  /// In no order.
  [[nodiscard]] std::vector<Term> terms() const;

 private:
  struct Count {
    std::size_t times = 0;
    std::size_t documents = 0;
    std::size_t lastDocument = 0;
    std::uint8_t seen = 0;
  };

  void addDocument(std::u32string_view text);
  void addWord(std::u32string_view word);

  std::unordered_map<std::string, Count> counts_;
  std::size_t words_ = 0;
  std::size_t document_ = 0;
};

}  // namespace kivra
