// Stored data of any content: the stores load, and what they save they read again.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "layout/replacement_store.h"
#include "platform/embedded/embedded_defaults_database.h"
#include "settings/settings_store.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const kivra::Data data{std::string(reinterpret_cast<const char*>(bytes), size)};
  kivra::embedded::EmbeddedDefaultsDatabase database;
  for (const auto* key :
       {"kivra.replacements", "kivra.hotkey.manualSwitch", "kivra.combo.correct"}) {
    database.setObject(data, key);
  }
  kivra::UserDefaults defaults(database);
  const kivra::SettingsStore settings(defaults);
  const auto hotkey = settings.manualSwitchHotkey();
  if (kivra::Hotkey::decoded(hotkey.encoded()) != hotkey) std::abort();
  const kivra::ReplacementStore store(defaults);
  const kivra::ReplacementStore reopened(defaults);
  if (reopened.index() != store.index()) std::abort();
  return 0;
}
