#include "value_text.h"

#include <array>
#include <charconv>
#include <variant>

namespace kivra {

namespace {

std::string hexText(std::string_view bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += {digits[byte >> 4U], digits[byte & 0xFU]};
  }
  return text;
}

std::string arrayText(const std::vector<std::string>& strings) {
  std::string text = "(\n";
  for (std::size_t i = 0; i < strings.size(); ++i) {
    text += "    " + quotedText(strings[i]) + (i + 1 < strings.size() ? ",\n" : "\n");
  }
  return text + ')';
}

struct ValueText {
  std::string operator()(bool value) const { return value ? "1" : "0"; }
  std::string operator()(const std::string& value) const { return quotedText(value); }
  std::string operator()(const std::vector<std::string>& value) const { return arrayText(value); }
  std::string operator()(const Data& value) const { return '<' + hexText(value.bytes) + '>'; }
};

}  // namespace

std::string valueText(const DefaultsValue& value) { return std::visit(ValueText{}, value); }

std::string quotedText(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      result += {'\\', c};
    } else if (c == '\n') {
      result += "\\n";
    } else if (byte < 0x20 || byte == 0x7F) {
      result += "\\x" + hexText({&c, 1});
    } else {
      result += c;
    }
  }
  return result + '"';
}

std::optional<bool> parsedBool(std::string_view text) {
  if (text == "true" || text == "yes" || text == "1") return true;
  if (text == "false" || text == "no" || text == "0") return false;
  return std::nullopt;
}

std::optional<Data> parsedData(std::string_view hex) {
  Data data;
  for (; hex.size() >= 2; hex.remove_prefix(2)) {
    unsigned char byte = 0;
    const auto [end, error] = std::from_chars(hex.data(), hex.data() + 2, byte, 16);
    if (error != std::errc() || end != hex.data() + 2) return std::nullopt;
    data.bytes += static_cast<char>(byte);
  }
  return hex.empty() ? std::optional(data) : std::nullopt;
}

}  // namespace kivra
