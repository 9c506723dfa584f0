#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kivra {

/// Bytes stored as they are.
struct Data {
  std::string bytes;

  bool operator==(const Data&) const = default;
};

using DefaultsValue = std::variant<bool, std::string, std::vector<std::string>, Data>;

/// The persistent domain of the user's defaults: typed values under keys, on disk when an
/// operation returns. Nothing throws: a value that cannot be read is absent, and a write that the
/// disk refuses is kept for this run only.
class DefaultsDatabase {
 public:
  virtual ~DefaultsDatabase() = default;

  virtual std::optional<DefaultsValue> objectForKey(std::string_view key) = 0;
  virtual void setObject(const DefaultsValue& value, std::string_view key) = 0;
  virtual void removeObject(std::string_view key) = 0;

  /// Everything stored, by key.
  virtual std::map<std::string, DefaultsValue> dictionaryRepresentation() = 0;
};

}  // namespace kivra
