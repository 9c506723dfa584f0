#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/defaults_database.h"

namespace kivra {

/// The user's defaults: the persistent domain with the registration domain behind it, which answers
/// while nothing is stored and is never written to disk. A value of another type than the one asked
/// for reads as absent.
class UserDefaults {
 public:
  explicit UserDefaults(DefaultsDatabase& persistent) : persistent_(persistent) {}

  void registerDefault(std::string key, DefaultsValue value);

  std::optional<bool> boolForKey(std::string_view key) const { return typed<bool>(key); }
  std::optional<std::string> stringForKey(std::string_view key) const {
    return typed<std::string>(key);
  }
  std::optional<std::vector<std::string>> stringArrayForKey(std::string_view key) const {
    return typed<std::vector<std::string>>(key);
  }
  std::optional<Data> dataForKey(std::string_view key) const { return typed<Data>(key); }

  /// Writes to the persistent domain.
  void set(const DefaultsValue& value, std::string_view key) { persistent_.setObject(value, key); }

 private:
  template <class T>
  std::optional<T> typed(std::string_view key) const {
    if (auto stored = persistent_.objectForKey(key)) {
      if (auto* value = std::get_if<T>(&*stored)) return std::move(*value);
    }
    const auto registered = registered_.find(key);
    if (registered == registered_.end()) return std::nullopt;
    const auto* value = std::get_if<T>(&registered->second);
    return value == nullptr ? std::nullopt : std::optional<T>(*value);
  }

  DefaultsDatabase& persistent_;
  std::map<std::string, DefaultsValue, std::less<>> registered_;
};

}  // namespace kivra
