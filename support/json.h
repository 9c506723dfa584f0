#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/// Decoding of JSON that comes from outside: every reader answers nothing for what does not fit.
namespace kivra::json {

using Value = nlohmann::json;

/// The value that the whole of `bytes` encodes; nothing when it is nested in more than 1000 levels.
std::optional<Value> parse(std::string_view bytes);

/// Compact UTF-8 encoding; invalid UTF-8 in strings is written as U+FFFD.
std::string encode(const Value& value);

/// The member `name` of an object.
const Value* member(const Value& object, const char* name);

std::optional<std::string> stringMember(const Value& object, const char* name);

/// A whole number that `Number` can hold; 35.0 is one, 35.5 is not.
template <class Number>
std::optional<Number> integer(const Value& value) {
  static_assert(std::is_integral_v<Number>);
  using Limits = std::numeric_limits<Number>;
  if (value.is_number_unsigned()) {
    const auto number = value.get<std::uint64_t>();
    if (number > static_cast<std::uint64_t>(Limits::max())) return std::nullopt;
    return static_cast<Number>(number);
  }
  if (value.is_number_integer()) {
    const auto number = value.get<std::int64_t>();
    if (std::is_unsigned_v<Number> || number < static_cast<std::int64_t>(Limits::min())) {
      return std::nullopt;
    }
    return static_cast<Number>(number);
  }
  if (!value.is_number_float()) return std::nullopt;
  const auto number = value.get<double>();
  if (std::trunc(number) != number || number < static_cast<double>(Limits::min()) ||
      number >= std::ldexp(1.0, Limits::digits)) {
    return std::nullopt;
  }
  return static_cast<Number>(number);
}

template <class Number>
std::optional<Number> integerMember(const Value& object, const char* name) {
  const auto* value = member(object, name);
  return value == nullptr ? std::nullopt : integer<Number>(*value);
}

/// The elements of an array of strings.
std::optional<std::vector<std::string>> stringArray(const Value& value);

}  // namespace kivra::json
