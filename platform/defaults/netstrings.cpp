#include "platform/defaults/netstrings.h"

#include <charconv>
#include <system_error>

namespace kivra::netstrings {

std::string encoded(const std::vector<std::string>& strings) {
  std::string text;
  for (const auto& string : strings) {
    text += std::to_string(string.size()) + ':';
    text += string;
    text += ',';
  }
  return text;
}

std::optional<std::vector<std::string>> decoded(std::string_view text) {
  std::vector<std::string> strings;
  while (!text.empty()) {
    std::size_t size = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), size);
    if (error != std::errc()) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    if (text.size() < 2 || size > text.size() - 2) return std::nullopt;
    if (text.front() != ':' || text[size + 1] != ',') return std::nullopt;
    strings.emplace_back(text.substr(1, size));
    text.remove_prefix(size + 2);
  }
  return strings;
}

}  // namespace kivra::netstrings
