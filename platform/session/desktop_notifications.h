#pragma once

#include <memory>
#include <stop_token>

#include "platform/io/background_worker.h"
#include "platform/notifications.h"

namespace kivra {

/// The notifications of the session's desktop, one at a time; without a server of notifications
/// nothing is shown. Belongs to the main thread, on which buttons act.
class DesktopNotifications : public Notifications {
 public:
  explicit DesktopNotifications(CallOnMainThread callOnMainThread);

  void show(Notification notification) override;

 private:
  class Server;

  std::shared_ptr<Server> server_;
  std::stop_source shown_;  ///< stops waiting for the button of the one shown last
  BackgroundWorker worker_;
};

}  // namespace kivra
