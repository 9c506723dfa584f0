#pragma once

#include "operation.h"
#include "settings/settings_store.h"

namespace kivra::desk {

/// Assigns the property of the settings store that the operation names. Throws ScriptError for an
/// unknown property and for a value that does not fit it.
void setProperty(SettingsStore& settings, const Operation& operation);

}  // namespace kivra::desk
