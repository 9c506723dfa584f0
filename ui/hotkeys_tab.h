#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/local_key_monitors.h"
#include "platform/notifications.h"
#include "platform/terms.h"
#include "platform/workspace.h"
#include "settings/settings_store.h"
#include "ui/hosted_view.h"
#include "ui/hotkey_recorder_row.h"

namespace kivra {

/// The combinations of two modifiers, the hotkeys, and the languages that go with them.
class HotkeysTab : public HostedView {
 public:
  struct Environment {
    std::shared_ptr<SettingsStore> settings;
    LocalKeyMonitors& monitors;
    EnglishCharacter englishCharacter;
    Workspace& workspace;
    Notifications& notifications;
    const Terms& terms;
  };

  explicit HotkeysTab(const Environment& environment);

  View body() override;
  void onDisappear() override;

 private:
  View combinationsSection() const;
  View hotkeysSection() const;
  View otherSection() const;

  std::shared_ptr<SettingsStore> settings_;
  const Terms& terms_;
  std::shared_ptr<HotkeyRecorderRow> translate1_;
  std::shared_ptr<HotkeyRecorderRow> translate2_;
  std::shared_ptr<HotkeyRecorderRow> correct_;
  std::shared_ptr<HotkeyRecorderRow> manualSwitch_;
};

}  // namespace kivra
