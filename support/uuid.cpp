#include "support/uuid.h"

#include <random>

namespace kivra {

namespace {

constexpr std::string_view digits = "0123456789ABCDEF";

bool isHyphenAt(std::size_t position) {
  return position == 8 || position == 13 || position == 18 || position == 23;
}

std::optional<std::uint8_t> digitValue(char c) {
  const auto upper = c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
  const auto found = digits.find(upper);
  if (found == std::string_view::npos) return std::nullopt;
  return static_cast<std::uint8_t>(found);
}

}  // namespace

Uuid Uuid::random() {
  std::random_device device;
  Uuid uuid;
  for (auto& byte : uuid.bytes) byte = static_cast<std::uint8_t>(device());
  uuid.bytes[6] = static_cast<std::uint8_t>((uuid.bytes[6] & 0x0F) | 0x40);
  uuid.bytes[8] = static_cast<std::uint8_t>((uuid.bytes[8] & 0x3F) | 0x80);
  return uuid;
}

std::optional<Uuid> Uuid::parsed(std::string_view text) {
  if (text.size() != 36) return std::nullopt;
  Uuid uuid;
  std::size_t nibble = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isHyphenAt(i)) {
      if (text[i] != '-') return std::nullopt;
      continue;
    }
    const auto value = digitValue(text[i]);
    if (!value) return std::nullopt;
    auto& byte = uuid.bytes[nibble / 2];
    byte = static_cast<std::uint8_t>(byte << 4 | *value);
    ++nibble;
  }
  return uuid;
}

std::string Uuid::text() const {
  std::string result;
  for (const auto byte : bytes) {
    if (isHyphenAt(result.size())) result += '-';
    result += digits[byte >> 4];
    result += digits[byte & 0x0F];
  }
  return result;
}

}  // namespace kivra
