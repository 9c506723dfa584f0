#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/notifications.h"
#include "platform/terms.h"
#include "platform/workspace.h"
#include "settings/settings_store.h"

namespace kivra {

/// Who else waits for the keys of a recorded hotkey: another of the program's own, or another
/// program as far as the desktop knows.
class HotkeyConflicts {
 public:
  HotkeyConflicts(std::shared_ptr<SettingsStore> settings, EnglishCharacter englishCharacter,
                  Workspace& workspace, Notifications& notifications, const Terms& terms);

  /// The user has given the hotkey of this title these keys: tells whom they belonged to.
  void recorded(const std::string& title, const Hotkey& hotkey);

  /// A line about the hotkey of this title; empty while nobody else waits for its keys.
  std::string hint(const std::string& title, const Hotkey& hotkey) const;

 private:
  std::string ownHotkey(const std::string& title, const Hotkey& hotkey) const;

  std::shared_ptr<SettingsStore> settings_;
  EnglishCharacter englishCharacter_;
  Workspace& workspace_;
  Notifications& notifications_;
  const Terms& terms_;
  std::map<std::string, std::string> otherPrograms_;  // by title, as the recording found them
};

}  // namespace kivra
