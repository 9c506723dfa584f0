#include "support/json.h"

namespace kivra::json {

std::optional<Value> parse(std::string_view bytes) {
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
