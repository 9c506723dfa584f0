#pragma once

#include <optional>
#include <utility>

#include "platform/notifications.h"

namespace kivra::embedded {

/// This desktop shows none; the last one is kept for who asks.
class EmbeddedNotifications : public Notifications {
 public:
  void show(Notification notification) override { last = std::move(notification); }

  std::optional<Notification> last;
};

}  // namespace kivra::embedded
