#include "support/json.h"

#include <cstddef>

namespace kivra::json {

namespace {

/// Copies and encodings of a value are recursive: a hundred thousand levels overflow the stack.
/// Implementations may set a limit (RFC 8259, section 9).
constexpr std::size_t mostLevels = 1000;

bool isNestedTooDeeply(std::string_view bytes) {
  std::size_t level = 0;
  bool isInString = false;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = bytes[i];
    if (byte == '"') {
      isInString = !isInString;
    } else if (isInString) {
      if (byte == '\\') ++i;
    } else if (byte == '[' || byte == '{') {
      if (++level > mostLevels) return true;
    } else if ((byte == ']' || byte == '}') && level > 0) {
      --level;
    }
  }
  return false;
}

}  // namespace

std::optional<Value> parse(std::string_view bytes) {
  if (isNestedTooDeeply(bytes)) return std::nullopt;
  auto value = Value::parse(bytes, nullptr, /*allow_exceptions=*/false);
  if (value.is_discarded()) return std::nullopt;
  return value;
}

std::string encode(const Value& value) {
  return value.dump(-1, ' ', false, Value::error_handler_t::replace);
}

const Value* member(const Value& object, const char* name) {
  if (!object.is_object()) return nullptr;
  const auto found = object.find(name);
  return found == object.end() ? nullptr : &*found;
}

std::optional<std::string> stringMember(const Value& object, const char* name) {
  const auto* value = member(object, name);
  if (value == nullptr || !value->is_string()) return std::nullopt;
  return value->get<std::string>();
}

std::optional<std::vector<std::string>> stringArray(const Value& value) {
  if (!value.is_array()) return std::nullopt;
  std::vector<std::string> strings;
  for (const auto& element : value) {
    if (!element.is_string()) return std::nullopt;
    strings.push_back(element.get<std::string>());
  }
  return strings;
}

}  // namespace kivra::json
