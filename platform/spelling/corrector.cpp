#include "platform/spelling/corrector.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace kivra {
namespace {

constexpr std::size_t shortestWord = 4;
constexpr std::size_t longestWord = 30;
// From seven letters on a correction may be two letters away, before that one.
constexpr std::size_t twoSlipsFrom = 7;

// What a frequency level counts for: half, since the lists come from an encyclopedia, where "может"
// is a million times as common as "можешь".
int commonness(int level) { return level / 2; }

// Stands for the lead of a candidate that has no rival.
constexpr int noRival = 100;

// Walks the automaton with all ways to match at most two slips at once: bit i of `reached[d]` says
// that the first i letters of the word can be read as the path so far with d slips.
class NearbyWords {
 public:
  NearbyWords(const SpellingIndex& index, std::string_view word, std::size_t slips)
      : automaton_(index.automaton()),
        index_(index),
        slips_(slips),
        accepting_(std::uint64_t{1} << word.size()) {
    for (std::size_t i = 0; i < word.size(); ++i) {
      places_[static_cast<unsigned char>(word[i])] |= std::uint64_t{1} << i;
    }
  }

  template <typename Found>
  void search(Found&& found) {
    if (automaton_.root() == 0) return;
    Reached start{};
    for (std::size_t d = 0; d <= slips_; ++d) start[d] = (std::uint64_t{2} << d) - 1;
    path_.clear();
    walk(automaton_.root(), 0, start, found);
  }

 private:
  using Reached = std::array<std::uint64_t, 3>;

  [[nodiscard]] Reached step(const Reached& from, char letter) const {
    const std::uint64_t here = places_[static_cast<unsigned char>(letter)];
    Reached to{};
    to[0] = (from[0] & here) << 1U;
    for (std::size_t d = 1; d <= slips_; ++d) {
      to[d] = ((from[d] & here) << 1U) | from[d - 1] | (from[d - 1] << 1U) | (to[d - 1] << 1U);
    }
    return to;
  }

  template <typename Found>
  void walk(std::uint32_t state, std::uint32_t number, const Reached& from, Found& found) {
    for (std::uint32_t at = state;; ++at) {
      const AutomatonEdge& edge = automaton_.edge(at);
      const Reached to = step(from, edge.letter());
      const std::uint64_t alive = to[slips_] & (accepting_ | (accepting_ - 1));
      if (alive != 0) {
        path_.push_back(edge.letter());
        std::uint32_t below = number + edge.wordsBefore;
        if (edge.endsWord()) {
          if ((alive & accepting_) != 0) found(path_, index_.word(below));
          ++below;
        }
        if (edge.target() != 0) walk(edge.target(), below, to, found);
        path_.pop_back();
      }
      if (edge.isLast()) return;
    }
  }

  const WordAutomaton& automaton_;
  const SpellingIndex& index_;
  std::size_t slips_;
  std::uint64_t accepting_;
  std::array<std::uint64_t, 256> places_{};
  std::string path_;
};

bool mayBeMeant(const IndexedWord& word) {
  if (!word.inDictionary) return false;
  return word.dictionaryCase == LetterCase::lower || word.dictionaryCase == LetterCase::capitalised;
}

// "придёт" is no rival of "придет".
void dropTwins(std::vector<CorrectionCandidate>& sorted) {
  std::vector<CorrectionCandidate> kept;
  for (CorrectionCandidate& candidate : sorted) {
    const std::string folded = foldYo(candidate.word);
    const bool isTwin = std::any_of(
        kept.begin(), kept.end(), [&](const auto& other) { return foldYo(other.word) == folded; });
    if (!isTwin) kept.push_back(std::move(candidate));
  }
  sorted = std::move(kept);
}

std::string inCase(std::string_view code, LetterCase typed, LetterCase dictionary) {
  const std::u32string scalars = decodeUtf8(decodeWord(code));
  std::string out;
  for (std::size_t i = 0; i < scalars.size(); ++i) {
    const bool capital =
        typed == LetterCase::upper ||
        (i == 0 && (typed == LetterCase::capitalised || dictionary == LetterCase::capitalised));
    appendUtf8(out, capital ? upperScalar(scalars[i]) : scalars[i]);
  }
  return out;
}

}  // namespace

std::vector<CorrectionCandidate> Corrector::candidates(std::string_view encoded) const {
  std::vector<CorrectionCandidate> out;
  if (encoded.size() < shortestWord || encoded.size() > longestWord) return out;
  NearbyWords nearby(index_, encoded, encoded.size() < twoSlipsFrom ? 1 : 2);
  nearby.search([&](const std::string& word, const IndexedWord& known) {
    if (!mayBeMeant(known)) return;
    const int cost = slips_.cost(encoded, word);
    out.push_back({word, known, cost, commonness(known.frequency.level) - cost, true});
  });
  if (encoded.size() < twoSlipsFrom) addSwapped(encoded, out);
  std::stable_sort(out.begin(), out.end(),
                   [](const auto& a, const auto& b) { return a.score > b.score; });
  dropTwins(out);
  return out;
}

void Corrector::addSwapped(std::string_view encoded, std::vector<CorrectionCandidate>& out) const {
  std::string word(encoded);
  for (std::size_t i = 0; i + 1 < word.size(); ++i) {
    if (word[i] == word[i + 1]) continue;
    std::swap(word[i], word[i + 1]);
    const auto known = index_.find(word);
    if (known && mayBeMeant(*known)) {
      const int cost = slips_.cost(encoded, word);
      out.push_back({word, *known, cost, commonness(known->frequency.level) - cost, false});
    }
    std::swap(word[i], word[i + 1]);
  }
}

std::optional<std::string> Corrector::correct(std::u32string_view word) const {
  if (word.size() < shortestWord || word.size() > longestWord) return std::nullopt;
  const LetterCase typed = letterCaseOf(word);
  const auto code = encodeWord(word);
  if (!code || typed == LetterCase::mixed || odds_.isLeftAlone(*code)) return std::nullopt;
  const auto near = candidates(*code);
  if (near.empty() || !near.front().isAccepted) return std::nullopt;
  const CorrectionCandidate& best = near.front();
  // The word itself, in another case than the dictionary's.
  if (foldYo(best.word) == foldYo(*code)) return std::nullopt;
  const int lead = near.size() > 1 ? best.score - near[1].score : noRival;
  const double odds = odds_.of({*code, best.word, typed, best.known.dictionaryCase,
                                commonness(best.known.frequency.level), best.cost, lead});
  if (odds < demandedOdds_) return std::nullopt;
  return inCase(best.word, typed, best.known.dictionaryCase);
}

}  // namespace kivra
