#include "yaml_scalar.h"

#include "support/json.h"
#include "support/text.h"

namespace kivra::control {

namespace {

/// Nothing but a comment.
bool isRest(std::string_view text) {
  const auto trimmed = text::trimmed(text);
  return trimmed.empty() ||
         (trimmed.size() < text.size() && trimmed.starts_with('#') && !text.starts_with('#'));
}

std::optional<std::string> singleQuoted(std::string_view value) {
  std::string text;
  for (std::size_t i = 1; i < value.size(); ++i) {
    if (value[i] != '\'') {
      text += value[i];
    } else if (i + 1 < value.size() && value[i + 1] == '\'') {
      text += value[++i];
    } else {
      return isRest(value.substr(i + 1)) ? std::optional(text) : std::nullopt;
    }
  }
  return std::nullopt;
}

// A scalar in double quotes is a string of JSON but for some escapes that nobody needs here.
std::optional<std::string> doubleQuoted(std::string_view value) {
  std::size_t end = 1;
  while (end < value.size() && value[end] != '"') end += value[end] == '\\' ? 2 : 1;
  if (end >= value.size() || !isRest(value.substr(end + 1))) return std::nullopt;
  const auto parsed = json::parse(value.substr(0, end + 1));
  if (!parsed || !parsed->is_string()) return std::nullopt;
  return parsed->get<std::string>();
}

std::optional<std::string> plain(std::string_view value) {
  constexpr std::string_view ofOtherKinds = "[{|>&*!%@`,?";
  if (!value.empty() && ofOtherKinds.find(value.front()) != std::string_view::npos) {
    return std::nullopt;
  }
  const auto comment = value.find(" #");
  const auto text = text::trimmed(value.substr(0, comment));
  if (text.find(": ") != std::string_view::npos) return std::nullopt;
  return std::string(text);
}

}  // namespace

std::optional<std::string> yamlScalar(std::string_view value) {
  value = text::trimmed(value);
  if (value.starts_with('\'')) return singleQuoted(value);
  if (value.starts_with('"')) return doubleQuoted(value);
  return plain(value);
}

std::string yamlQuoted(std::string_view text) { return json::encode(std::string(text)); }

}  // namespace kivra::control
