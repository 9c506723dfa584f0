#include "term_counter.h"

#include <algorithm>

#include "platform/spelling/letter_code.h"

namespace kivra {
namespace {

constexpr std::size_t shortestTerm = 4;
constexpr std::size_t fewestDocuments = 2;
constexpr std::size_t fewestTimes = 3;
constexpr std::size_t fewestDocumentsOfCounted = 3;

bool isPieceMark(char32_t c) {
  return std::u32string_view(U"-'’_&").find(c) != std::u32string_view::npos ||
         (c >= U'0' && c <= U'9');
}

}  // namespace

void TermCounter::add(std::string_view text) {
  const std::u32string scalars = decodeUtf8(text);
  for (std::size_t pos = 0; pos < scalars.size();) {
    const std::size_t end = std::min(scalars.find(U'\f', pos), scalars.size());
    addDocument(std::u32string_view(scalars).substr(pos, end - pos));
    pos = end + 1;
  }
}

void TermCounter::addDocument(std::u32string_view text) {
  ++document_;
  for (auto begin = text.begin(); begin != text.end();) {
    const auto start = std::find_if(begin, text.end(), isLetterScalar);
    const auto end = std::find_if_not(start, text.end(), isLetterScalar);
    const bool isPiece = (start != text.begin() && isPieceMark(*(start - 1))) ||
                         (end != text.end() && isPieceMark(*end));
    if (start != end && !isPiece) addWord({start, end});
    begin = end;
  }
}

void TermCounter::addWord(std::u32string_view word) {
  ++words_;
  const auto code = encodeWord(word);
  if (!code || code->size() < shortestTerm) return;
  Count& count = counts_[foldYo(*code)];
  ++count.times;
  if (count.lastDocument != document_) ++count.documents;
  count.lastDocument = document_;
  count.seen = static_cast<std::uint8_t>(count.seen | seenIn(letterCaseOf(word)));
}

std::vector<Term> TermCounter::terms() const {
  std::vector<Term> terms;
  for (const auto& [code, count] : counts_) {
    if (count.documents < fewestDocuments || count.times < fewestTimes) continue;
    const bool isSure = count.documents >= fewestDocumentsOfCounted;
    terms.push_back({code, static_cast<double>(count.times) / static_cast<double>(words_),
                     static_cast<std::uint8_t>(count.seen | (isSure ? seenCounted : 0))});
  }
  return terms;
}

}  // namespace kivra
