#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/local_key_monitors.h"
#include "settings/settings_store.h"
#include "ui/hosted_view.h"
#include "ui/hotkey_recorder_row.h"

namespace kivra {

/// The combinations of two modifiers, the hotkeys, and the languages that go with them.
class HotkeysTab : public HostedView {
 public:
  HotkeysTab(std::shared_ptr<SettingsStore> settings, LocalKeyMonitors& monitors,
             const EnglishCharacter& englishCharacter);

  View body() override;
  void onDisappear() override;

 private:
  View combinationsSection() const;
  View hotkeysSection() const;
  View otherSection() const;

  std::shared_ptr<SettingsStore> settings_;
  std::shared_ptr<HotkeyRecorderRow> translate1_;
  std::shared_ptr<HotkeyRecorderRow> translate2_;
  std::shared_ptr<HotkeyRecorderRow> correct_;
  std::shared_ptr<HotkeyRecorderRow> manualSwitch_;
};

}  // namespace kivra
