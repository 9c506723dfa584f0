#pragma once

#include <functional>

#include "platform/defaults_database.h"

namespace kivra::embedded {

/// A defaults database in memory.
class EmbeddedDefaultsDatabase : public DefaultsDatabase {
 public:
  std::optional<DefaultsValue> objectForKey(std::string_view key) override {
    const auto found = values_.find(std::string(key));
    return found == values_.end() ? std::nullopt : std::optional(found->second);
  }
  void setObject(const DefaultsValue& value, std::string_view key) override {
    values_.insert_or_assign(std::string(key), value);
  }
  void removeObject(std::string_view key) override { values_.erase(std::string(key)); }
  std::map<std::string, DefaultsValue> dictionaryRepresentation() override { return values_; }

 private:
  std::map<std::string, DefaultsValue> values_;
};

}  // namespace kivra::embedded
