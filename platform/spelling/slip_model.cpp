#include "platform/spelling/slip_model.h"

#include <algorithm>
#include <string>

#include "platform/spelling/letter_code.h"
#include "platform/spelling/sound_rewrites.h"

namespace kivra {
namespace {

constexpr int anyLetter = 26;
constexpr int neighbourKey = 15;
constexpr int soundAlike = 22;
constexpr int vowelForVowel = 20;
constexpr int yoForYe = 1;
constexpr int swapped = 20;
constexpr int droppedLetter = 14;
constexpr int droppedTwin = 7;
constexpr int droppedSign = 9;
constexpr int droppedEndSign = 1;
constexpr int addedLetter = 28;
constexpr int addedTwin = 13;
constexpr int addedSign = 15;
constexpr int addedNeighbour = 21;
constexpr int droppedMute = 10;
constexpr int addedMute = 14;
constexpr int firstLetter = 4;

constexpr std::u32string_view rowsLatin[] = {U"qwertyuiop", U"asdfghjkl", U"zxcvbnm"};
constexpr std::u32string_view rowsCyrillic[] = {U"йцукенгшщзхъ", U"фывапролджэ", U"ячсмитьбю"};

// Letters that are heard or remembered as one another.
constexpr std::u32string_view alike[] = {
    U"оа", U"еи", U"яе", U"яи", U"ыи", U"эе", U"юу", U"бп", U"вф", U"гк", U"дт",
    U"жш", U"зс", U"шщ", U"цс", U"чш", U"гв", U"щч", U"ьъ", U"ео", U"ое", U"йи",
    U"ae", U"ei", U"ie", U"ao", U"oa", U"eo", U"ai", U"iy", U"ey", U"ou", U"ck",
    U"cs", U"sz", U"gj", U"td", U"fv", U"ua", U"ue", U"qk", U"mn", U"sc",
};

std::size_t classOf(char code) {
  const auto byte = static_cast<unsigned char>(code);
  if (byte >= 'a' && byte <= 'z') return byte - std::size_t{'a'} + 1;
  if (byte >= 0x80 && byte <= 0xA0) return byte - std::size_t{0x80} + 27;
  return 0;
}

char codeOf(char32_t letter) {
  return letter < 0x80 ? static_cast<char>(letter) : cyrillicCode(letter);
}

bool isVowel(char code) {
  static const std::string vowels = [] {
    std::string out = "aeiouy";
    for (const char32_t c : U"аеиоуыэюяё") {
      if (c != 0) out.push_back(cyrillicCode(c));
    }
    return out;
  }();
  return vowels.find(code) != std::string::npos;
}

bool isSign(char code) {
  return code == cyrillicCode(U'ь') || code == cyrillicCode(U'ъ') || code == '\'' || code == '-';
}

// Consonants that are written but not heard: "лестница", "поздно", "чувство", "солнце"; "which",
// "know", "science", a final e.
bool isMute(std::string_view word, std::size_t at) {
  const char code = word[at];
  const char before = at > 0 ? word[at - 1] : '\0';
  const char after = at + 1 < word.size() ? word[at + 1] : '\0';
  if (code == cyrillicCode(U'т')) return before == cyrillicCode(U'с') && after != '\0';
  if (code == cyrillicCode(U'д'))
    return before == cyrillicCode(U'з') || before == cyrillicCode(U'р');
  if (code == cyrillicCode(U'в')) return after == cyrillicCode(U'с');
  if (code == cyrillicCode(U'л')) return after == cyrillicCode(U'н');
  if (code == 'e') return after == '\0' || !isVowel(after);
  if (code == 'h') return !isVowel(before);
  if (code == 'c') return before == 's' || after == 'k' || after == 'q';
  return code == 'u' && (before == 'g' || before == 'o' || after == 'o');
}

template <typename Rows, typename Callback>
void forEachNeighbourPair(const Rows& rows, Callback&& callback) {
  // Rows are staggered: a key touches the one of its own number and the one before in the row
  // above.
  for (std::size_t row = 0; row < 3; ++row) {
    for (std::size_t i = 0; i < rows[row].size(); ++i) {
      if (i + 1 < rows[row].size()) callback(rows[row][i], rows[row][i + 1]);
      if (row == 0) continue;
      if (i < rows[row - 1].size()) callback(rows[row][i], rows[row - 1][i]);
      if (i + 1 < rows[row - 1].size()) callback(rows[row][i], rows[row - 1][i + 1]);
    }
  }
}

}  // namespace

SlipModel::SlipModel() {
  for (auto& row : substitution_) row.fill(anyLetter);
  const auto lowerTo = [this](char a, char b, int cost) {
    auto& there = substitution_[classOf(a)][classOf(b)];
    there = static_cast<std::uint8_t>(std::min<int>(there, cost));
  };
  const auto neighbours = [&](char32_t a, char32_t b) {
    const char first = codeOf(a);
    const char second = codeOf(b);
    lowerTo(first, second, neighbourKey);
    lowerTo(second, first, neighbourKey);
    neighbours_[classOf(first)][classOf(second)] = 1;
    neighbours_[classOf(second)][classOf(first)] = 1;
  };
  forEachNeighbourPair(rowsLatin, neighbours);
  forEachNeighbourPair(rowsCyrillic, neighbours);
  for (int a = 0; a < 0x100; ++a) {
    for (int b = 0; b < 0x100; ++b) {
      const auto first = static_cast<char>(a);
      const auto second = static_cast<char>(b);
      if (isVowel(first) && isVowel(second)) lowerTo(first, second, vowelForVowel);
    }
  }
  for (const std::u32string_view pair : alike) {
    lowerTo(codeOf(pair[0]), codeOf(pair[1]), soundAlike);
    lowerTo(codeOf(pair[1]), codeOf(pair[0]), soundAlike);
  }
  lowerTo(yoCode, yeCode, yoForYe);
  lowerTo(yeCode, yoCode, yoForYe);
  for (const SoundRewrite& rewrite : soundRewrites()) {
    const auto typed = encodeWord(rewrite.typed);
    const auto meant = encodeWord(rewrite.meant);
    if (!typed || !meant) continue;
    rewrites_[classOf(typed->back())].push_back({*typed, *meant, rewrite.cost, rewrite.place});
  }
}

int SlipModel::substitution(char typed, char meant) const {
  return typed == meant ? 0 : substitution_[classOf(typed)][classOf(meant)];
}

int SlipModel::dropped(std::string_view meant, std::size_t at) {
  const char code = meant[at];
  const bool last = at + 1 == meant.size();
  if ((at > 0 && meant[at - 1] == code) || (!last && meant[at + 1] == code)) return droppedTwin;
  if (isSign(code)) {
    // "хочеш": the most common slip of all.
    const bool verbEnding = last && at > 0 && meant[at - 1] == cyrillicCode(U'ш');
    return verbEnding ? droppedEndSign : droppedSign;
  }
  if (isMute(meant, at)) return droppedMute;
  return droppedLetter + (at == 0 ? firstLetter : 0);
}

int SlipModel::added(std::string_view typed, std::size_t at) const {
  const char code = typed[at];
  const bool last = at + 1 == typed.size();
  if ((at > 0 && typed[at - 1] == code) || (!last && typed[at + 1] == code)) return addedTwin;
  if (isSign(code)) return addedSign;
  const auto touches = [&](std::size_t other) {
    return neighbours_[classOf(code)][classOf(typed[other])] != 0;
  };
  if ((at > 0 && touches(at - 1)) || (!last && touches(at + 1))) return addedNeighbour;
  if (isMute(typed, at)) return addedMute;
  return addedLetter + (at == 0 ? firstLetter : 0);
}

bool SlipModel::Rewrite::endsAt(std::string_view typedSoFar, std::string_view meantSoFar,
                                bool complete) const {
  if (!typedSoFar.ends_with(typed) || !meantSoFar.ends_with(meant)) return false;
  if (place == SoundRewrite::Place::end) return complete;
  return place == SoundRewrite::Place::anywhere ||
         (typedSoFar.size() == typed.size() && meantSoFar.size() == meant.size());
}

int SlipModel::cost(std::string_view typed, std::string_view meant) const {
  if (typed.size() > longestWord || meant.size() > longestWord) return impossible;
  // cells[i][j]: the first i letters were typed where the first j were meant.
  std::array<std::array<int, longestWord + 1>, longestWord + 1> cells;
  for (std::size_t i = 0; i <= typed.size(); ++i) {
    for (std::size_t j = 0; j <= meant.size(); ++j) {
      int best = i == 0 && j == 0 ? 0 : impossible;
      if (i > 0) best = std::min(best, cells[i - 1][j] + added(typed, i - 1));
      if (j > 0) best = std::min(best, cells[i][j - 1] + dropped(meant, j - 1));
      if (i > 0 && j > 0) {
        const int step = substitution(typed[i - 1], meant[j - 1]);
        const int first = i == 1 && step > yoForYe ? firstLetter : 0;
        best = std::min(best, cells[i - 1][j - 1] + step + first);
        const bool complete = i == typed.size() && j == meant.size();
        for (const Rewrite& rewrite : rewrites_[classOf(typed[i - 1])]) {
          if (!rewrite.endsAt(typed.substr(0, i), meant.substr(0, j), complete)) continue;
          const auto& before = cells[i - rewrite.typed.size()];
          best = std::min(best, before[j - rewrite.meant.size()] + rewrite.cost);
        }
      }
      if (i > 1 && j > 1 && typed[i - 1] == meant[j - 2] && typed[i - 2] == meant[j - 1] &&
          typed[i - 1] != typed[i - 2]) {
        best = std::min(best, cells[i - 2][j - 2] + swapped);
      }
      cells[i][j] = best;
    }
  }
  return cells[typed.size()][meant.size()];
}

}  // namespace kivra
