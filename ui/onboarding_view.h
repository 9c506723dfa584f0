#pragma once

#include <memory>

#include "platform/terms.h"
#include "ui/hosted_view.h"
#include "ui/permissions.h"

namespace kivra {

/// The content of the permissions window: what the two permissions are for, and for each missing
/// one the ways to get it.
class OnboardingView : public HostedView {
 public:
  OnboardingView(std::shared_ptr<Permissions> permissions, const Terms& terms);

  View body() override;

 private:
  std::shared_ptr<Permissions> permissions_;
  const Terms& terms_;
};

}  // namespace kivra
