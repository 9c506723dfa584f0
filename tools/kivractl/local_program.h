#pragma once

#include <optional>
#include <string>
#include <vector>

#include "arguments.h"
#include "control.h"
#include "platform/defaults/sqlite_defaults_database.h"
#include "settings/user_defaults.h"
#include "why.h"

namespace kivra::control {

/// What stands in for the running program while none runs: its stored values.
class LocalProgram {
 public:
  LocalProgram();

  DefaultsDatabase& defaults() { return database_; }

  Reply carryOut(const Request& request);

 private:
  ReplacementStore& replacements();

  SqliteDefaultsDatabase database_;
  UserDefaults defaults_{database_};
  SettingsStore settings_{defaults_};
  ExceptionStore exceptions_{defaults_};
  std::optional<ReplacementStore> replacements_;
};

/// What the command `layouts` of a running program has answered.
std::optional<LayoutNames> parsedLayouts(const std::string& reply);

/// A whole number up to an hour. Throws Failure.
int secondsOf(const std::string& text);

}  // namespace kivra::control
