#include "platform/spelling/word_frequencies.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

#include "platform/spelling/letter_code.h"

namespace kivra {
namespace {

constexpr unsigned highestLevel = 63;

bool readNumber(std::string_view text, unsigned highest, std::uint8_t& out) {
  unsigned value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value > highest) return false;
  out = static_cast<std::uint8_t>(value);
  return true;
}

void readLine(std::string_view line, WordFrequencies& out) {
  const std::size_t first = line.find('\t');
  if (first == std::string_view::npos || first == 0) return;
  const std::size_t second = line.find('\t', first + 1);
  if (second == std::string_view::npos) return;
  WordFrequency frequency;
  if (!readNumber(line.substr(first + 1, second - first - 1), highestLevel, frequency.level) ||
      !readNumber(line.substr(second + 1), 0xFF, frequency.seen)) {
    return;
  }
  if (auto code = encodeWord(decodeUtf8(line.substr(0, first)))) {
    out.insert_or_assign(*std::move(code), frequency);
  }
}

}  // namespace

WordFrequencies readFrequencies(std::string_view text) {
  WordFrequencies out;
  bool first = true;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    if (first) {
      if (line != frequencyFileHeader) return out;
      out.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')));
      first = false;
    } else {
      readLine(line, out);
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return out;
}

}  // namespace kivra
