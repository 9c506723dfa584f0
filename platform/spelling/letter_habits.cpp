#include "platform/spelling/letter_habits.h"

#include <algorithm>
#include <cmath>

namespace kivra {
namespace {

constexpr std::size_t edge = 0;
constexpr std::size_t sign = LetterHabits::letters - 1;

std::size_t numberOf(char code) {
  const auto byte = static_cast<unsigned char>(code);
  if (byte >= 'a' && byte <= 'z') return byte - std::size_t{'a'} + 1;
  if (byte >= 0x80 && byte <= 0xA0) return byte - std::size_t{0x80} + 1;
  return sign;
}

std::size_t placeOf(std::size_t first, std::size_t second, std::size_t third) {
  return (first * LetterHabits::letters + second) * LetterHabits::letters + third;
}

// Calls with the place of each letter of the word behind the two before it, and of the word's end.
template <typename Visit>
void forEachTriple(std::string_view word, Visit&& visit) {
  std::size_t first = edge;
  std::size_t second = edge;
  for (std::size_t i = 0; i <= word.size(); ++i) {
    const std::size_t third = i < word.size() ? numberOf(word[i]) : edge;
    visit(placeOf(first, second, third));
    first = second;
    second = third;
  }
}

// How many sightings a guess from less context is worth.
constexpr double trustInGuess = 4;

}  // namespace

int LetterHabits::cost(std::string_view word) const {
  if (table_.empty()) return 0;
  int sum = 0;
  forEachTriple(word, [&](std::size_t place) { sum += table_[place]; });
  return sum;
}

void LetterHabitsBuilder::add(std::string_view word) {
  forEachTriple(word, [this](std::size_t place) { ++triples_[place]; });
}

std::string LetterHabitsBuilder::finish() const {
  constexpr std::size_t n = LetterHabits::letters;
  std::vector<double> pairs(n * n);
  std::vector<double> singles(n);
  double all = 0;
  for (std::size_t place = 0; place < triples_.size(); ++place) {
    const double count = triples_[place];
    pairs[place % (n * n)] += count;
    singles[place % n] += count;
    all += count;
  }
  std::vector<double> behindOne(n);
  for (std::size_t pair = 0; pair < pairs.size(); ++pair) behindOne[pair / n] += pairs[pair];

  std::string table(triples_.size(), '\0');
  for (std::size_t first = 0; first < n; ++first) {
    for (std::size_t second = 0; second < n; ++second) {
      double behindTwo = 0;
      for (std::size_t third = 0; third < n; ++third) {
        behindTwo += triples_[placeOf(first, second, third)];
      }
      for (std::size_t third = 0; third < n; ++third) {
        const double one = (singles[third] + 1) / (all + n);
        const double two =
            (pairs[second * n + third] + trustInGuess * one) / (behindOne[second] + trustInGuess);
        const double three = (triples_[placeOf(first, second, third)] + trustInGuess * two) /
                             (behindTwo + trustInGuess);
        const long cost = std::lround(-4 * std::log(three));
        table[placeOf(first, second, third)] =
            static_cast<char>(static_cast<unsigned char>(std::clamp(cost, 0L, 255L)));
      }
    }
  }
  return table;
}

}  // namespace kivra
