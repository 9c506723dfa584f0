#pragma once

#include <span>
#include <string_view>

namespace kivra {

/// A way in which writers who go by the ear, or by another word, write some letters for others.
struct SoundRewrite {
  enum class Place : unsigned char { anywhere, start, end };

  std::u32string_view typed;
  std::u32string_view meant;
  int cost = 0;  ///< see SlipModel
  Place place = Place::anywhere;
};

/// The rewrites of Russian and English, one to four letters on each side.
std::span<const SoundRewrite> soundRewrites();

}  // namespace kivra
