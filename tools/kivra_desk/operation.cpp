#include "operation.h"

#include <cmath>
#include <limits>

#include "support/json.h"

namespace kivra::desk {

Operation Operation::parsed(const std::string& line) {
  auto value = json::parse(line);
  if (!value) throw ScriptError("not valid JSON");
  if (!value->is_object()) throw ScriptError("an operation must be an object");
  Operation operation(std::move(*value));
  operation.name_ = operation.string("op");
  return operation;
}

Operation Operation::element(const Json& value) const {
  if (!value.is_object()) throw ScriptError(name_ + ": the list must hold objects");
  return Operation(value);
}

void Operation::mistyped(const char* member, const char* wanted) {
  throw ScriptError(std::string("\"") + member + "\" must be " + wanted);
}

const Operation::Json& Operation::any(const char* member) const {
  const auto found = json_.find(member);
  if (found == json_.end()) throw ScriptError(std::string("\"") + member + "\" is missing");
  return *found;
}

std::string Operation::string(const char* member) const {
  const auto& value = any(member);
  if (!value.is_string()) mistyped(member, "a string");
  return value.get<std::string>();
}

std::string Operation::string(const char* member, std::string fallback) const {
  return has(member) ? string(member) : std::move(fallback);
}

std::optional<std::string> Operation::nullableString(const char* member) const {
  if (any(member).is_null()) return std::nullopt;
  return string(member);
}

bool Operation::boolean(const char* member) const {
  const auto& value = any(member);
  if (!value.is_boolean()) mistyped(member, "true or false");
  return value.get<bool>();
}

bool Operation::boolean(const char* member, bool fallback) const {
  return has(member) ? boolean(member) : fallback;
}

double Operation::nonNegative(const char* member) const {
  const auto& value = any(member);
  const auto number = value.is_number() ? value.get<double>() : -1.0;
  // A day is more than any script needs, and stays far from the end of the clock.
  constexpr double most = 1e9;
  if (!std::isfinite(number) || number < 0 || number > most) {
    mistyped(member, "a number that is not negative");
  }
  return number;
}

std::uint64_t Operation::integer(const char* member, std::uint64_t most) const {
  const auto number = json::integer<std::uint64_t>(any(member));
  if (!number || *number > most) {
    mistyped(member, ("a whole number from 0 to " + std::to_string(most)).c_str());
  }
  return *number;
}

std::uint64_t Operation::integer(const char* member, std::uint64_t most,
                                 std::uint64_t fallback) const {
  return has(member) ? integer(member, most) : fallback;
}

std::int64_t Operation::signedInteger(const char* member) const {
  const auto number = json::integer<std::int64_t>(any(member));
  if (!number) mistyped(member, "a whole number");
  return *number;
}

std::vector<std::string> Operation::strings(const char* member) const {
  auto values = json::stringArray(any(member));
  if (!values) mistyped(member, "an array of strings");
  return std::move(*values);
}

std::pair<std::size_t, std::size_t> Operation::range(const char* member) const {
  const auto& value = any(member);
  if (!value.is_array() || value.size() != 2) mistyped(member, "[start,end]");
  const auto begin = json::integer<std::size_t>(value[0]);
  const auto end = json::integer<std::size_t>(value[1]);
  if (!begin || !end || *begin > *end) mistyped(member, "[start,end]");
  return {*begin, *end};
}

const Operation::Json& Operation::object(const char* member) const {
  const auto& value = any(member);
  if (!value.is_object()) mistyped(member, "an object");
  return value;
}

const Operation::Json& Operation::array(const char* member) const {
  const auto& value = any(member);
  if (!value.is_array()) mistyped(member, "an array");
  return value;
}

}  // namespace kivra::desk
