#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kivra {

/// A universally unique identifier (RFC 4122).
struct Uuid {
  std::array<std::uint8_t, 16> bytes{};

  bool operator==(const Uuid&) const = default;

  /// A new random identifier (version 4).
  static Uuid random();

  /// From the 36-character form, in either case.
  static std::optional<Uuid> parsed(std::string_view text);

  /// The 36-character form in upper case.
  std::string text() const;
};

}  // namespace kivra
