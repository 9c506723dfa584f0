#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spelling/sound_rewrites.h"

namespace kivra {

/// How unlikely it is that a hand or a mind turns one word into another. Costs are in quarters of a
/// nat (four times the natural logarithm of a chance), the unit of WordFrequency::level, so that
/// the two may be subtracted. The figures were fitted on the lists named in NOTICE.md.
class SlipModel {
 public:
  SlipModel();

  /// The cost of the cheapest way in which someone who meant `meant` typed `typed`; both encoded
  /// (see letter_code.h) and at most `longestWord` letters, else the cost is `impossible`.
  [[nodiscard]] int cost(std::string_view typed, std::string_view meant) const;

  static constexpr std::size_t longestWord = 40;
  static constexpr int impossible = 10000;

 private:
  // Letter codes are packed into 64 classes: 26 Latin letters, 33 Cyrillic ones, the rest 0.
  static constexpr std::size_t classes = 64;
  using Table = std::array<std::array<std::uint8_t, classes>, classes>;

  // A sound rewrite, encoded.
  struct Rewrite {
    std::string typed;
    std::string meant;
    int cost = 0;
    SoundRewrite::Place place = SoundRewrite::Place::anywhere;

    [[nodiscard]] bool endsAt(std::string_view typedSoFar, std::string_view meantSoFar,
                              bool complete) const;
  };

  [[nodiscard]] int substitution(char typed, char meant) const;
  [[nodiscard]] static int dropped(std::string_view meant, std::size_t at);
  [[nodiscard]] int added(std::string_view typed, std::size_t at) const;

  Table substitution_{};
  Table neighbours_{};
  std::array<std::vector<Rewrite>, classes> rewrites_;  // by the class of the last letter typed
};

}  // namespace kivra
