#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/terms.h"
#include "ui/hosted_view.h"
#include "ui/permissions.h"

namespace kivra {

/// The content of the permissions window: what the two permissions are for, and for each missing
/// one the ways to get it; on request all that the desktop has and lacks.
class OnboardingView : public HostedView, public std::enable_shared_from_this<OnboardingView> {
 public:
  OnboardingView(std::shared_ptr<Permissions> permissions, const Terms& terms);

  View body() override;

 private:
  View diagnosis();
  void showDiagnosis();

  std::shared_ptr<Permissions> permissions_;
  const Terms& terms_;
  std::vector<std::string> diagnosis_;  // when it was asked for last
};

}  // namespace kivra
