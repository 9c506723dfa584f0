#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace kivra::desk {

/// What is wrong with a line of a script.
class ScriptError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One operation of a script: an object whose members are read with the types that they must have.
/// Every reader throws ScriptError when the member does not fit.
class Operation {
 public:
  using Json = nlohmann::json;

  /// Throws ScriptError unless the line is a JSON object with a name under "op".
  static Operation parsed(const std::string& line);

  const std::string& name() const { return name_; }
  bool has(const char* member) const { return json_.contains(member); }

  const Json& any(const char* member) const;
  std::string string(const char* member) const;
  std::string string(const char* member, std::string fallback) const;
  /// Nothing for null.
  std::optional<std::string> nullableString(const char* member) const;
  bool boolean(const char* member) const;
  bool boolean(const char* member, bool fallback) const;
  /// A finite number that is not negative.
  double nonNegative(const char* member) const;
  std::uint64_t integer(const char* member, std::uint64_t most) const;
  std::uint64_t integer(const char* member, std::uint64_t most, std::uint64_t fallback) const;
  std::int64_t signedInteger(const char* member) const;
  std::vector<std::string> strings(const char* member) const;
  std::pair<std::size_t, std::size_t> range(const char* member) const;
  const Json& object(const char* member) const;
  const Json& array(const char* member) const;

  /// For the elements of an array of objects.
  Operation element(const Json& value) const;

 private:
  explicit Operation(Json json) : json_(std::move(json)) {}
  [[noreturn]] static void mistyped(const char* member, const char* wanted);

  Json json_;
  std::string name_;
};

}  // namespace kivra::desk
