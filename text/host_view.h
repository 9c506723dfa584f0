#pragma once

#include <memory>
#include <optional>

#include "platform/run_loop.h"
#include "platform/translation.h"
#include "platform/windows.h"
#include "text/coordinator.h"

namespace kivra {

/// The content of the window that hosts the offline translator: invisible, or the announcement of a
/// download. Runs the coordinator's translation task whenever its configuration has changed.
class HostView : public std::enable_shared_from_this<HostView> {
 public:
  /// `window` must outlive the view.
  HostView(std::shared_ptr<Coordinator> coordinator, Window& window, Translation& translation,
           RunLoop& runLoop);

  /// Follows the coordinator's changes from now on.
  void observe();

  View body() const;

 private:
  void scheduleUpdate();
  void update();

  std::shared_ptr<Coordinator> coordinator_;
  Window& window_;
  Translation& translation_;
  RunLoop& runLoop_;
  Observable::Subscription subscription_;
  bool isUpdateScheduled_ = false;
  std::optional<TranslationConfiguration> lastTask_;
};

}  // namespace kivra
