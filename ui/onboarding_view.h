#pragma once

#include <memory>

#include "ui/hosted_view.h"
#include "ui/permissions.h"

namespace kivra {

/// The content of the permissions window: what the two permissions are for, and for each missing
/// one the ways to get it.
class OnboardingView : public HostedView {
 public:
  explicit OnboardingView(std::shared_ptr<Permissions> permissions);

  View body() override;

 private:
  std::shared_ptr<Permissions> permissions_;
};

}  // namespace kivra
