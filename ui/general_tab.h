#pragma once

#include <memory>

#include "platform/terms.h"
#include "settings/settings_store.h"
#include "ui/hosted_view.h"
#include "ui/permissions.h"

namespace kivra {

/// On and off, the automatic corrections, and how the permissions stand.
class GeneralTab : public HostedView {
 public:
  GeneralTab(std::shared_ptr<SettingsStore> settings, std::shared_ptr<Permissions> permissions,
             const Terms& terms);

  View body() override;
  void onAppear() override { permissions_->refresh(); }

 private:
  View permissionsSection() const;

  std::shared_ptr<SettingsStore> settings_;
  std::shared_ptr<Permissions> permissions_;
  const Terms& terms_;
};

}  // namespace kivra
