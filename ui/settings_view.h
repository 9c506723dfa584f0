#pragma once

#include <array>
#include <cstddef>
#include <memory>

#include "hotkeys/model/hotkey.h"
#include "layout/replacement_store.h"
#include "platform/local_key_monitors.h"
#include "platform/notifications.h"
#include "platform/terms.h"
#include "platform/workspace.h"
#include "settings/settings_store.h"
#include "text/keychain_store.h"
#include "text/text_engines.h"
#include "ui/hosted_view.h"
#include "ui/permissions.h"

namespace kivra {

/// The content of the settings window: four tabs, in which every change is written through at once.
class SettingsView : public HostedView, public std::enable_shared_from_this<SettingsView> {
 public:
  struct Environment {
    std::shared_ptr<SettingsStore> settings;
    std::shared_ptr<Permissions> permissions;
    std::shared_ptr<ReplacementStore> replacements;
    KeychainStore& keychain;
    TextEngines& engines;
    LocalKeyMonitors& localKeyMonitors;
    EnglishCharacter englishCharacter;
    Workspace& workspace;
    Notifications& notifications;
    const Terms& terms;
  };

  explicit SettingsView(const Environment& environment);

  View body() override;
  void onAppear() override { selected().onAppear(); }
  void onDisappear() override { selected().onDisappear(); }

 private:
  struct Tab {
    const char* label;
    const char* symbol;
    std::shared_ptr<HostedView> view;
  };

  HostedView& selected() { return *tabs_.at(selection_).view; }
  void select(const std::size_t& index);

  std::array<Tab, 4> tabs_;
  std::size_t selection_ = 0;
};

}  // namespace kivra
