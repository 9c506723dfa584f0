#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace kivra {

/// A number that differs for bytes that differ, but for one case in 2^64; no protection against
/// somebody who looks for that case. Sums chain: `start` is that of the bytes before.
inline std::uint64_t checksumOf(std::string_view bytes, std::uint64_t start = 0) {
  constexpr std::uint64_t factor = 0x9E3779B97F4A7C15ULL;
  std::uint64_t hash = start ^ bytes.size();
  std::size_t i = 0;
  for (; i + 8 <= bytes.size(); i += 8) {
    std::uint64_t block = 0;
    std::memcpy(&block, bytes.data() + i, 8);
    hash = (hash ^ block) * factor;
    hash ^= hash >> 29U;
  }
  for (; i < bytes.size(); ++i) {
    hash = (hash ^ static_cast<unsigned char>(bytes[i])) * factor;
  }
  return hash;
}

}  // namespace kivra
