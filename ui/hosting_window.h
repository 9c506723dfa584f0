#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/run_loop.h"
#include "platform/windows.h"
#include "ui/hosted_view.h"

namespace kivra {

/// A titled, closable window around a view, which stays up to date. Closing only hides it.
class HostingWindow : public std::enable_shared_from_this<HostingWindow> {
 public:
  /// In the middle of the screen, not shown yet.
  static std::shared_ptr<HostingWindow> create(Windows& windows, RunLoop& runLoop,
                                               const std::string& name, const std::string& title,
                                               std::shared_ptr<HostedView> view);

  void makeKeyAndOrderFront();
  void close() { window_->close(); }

 private:
  HostingWindow(std::unique_ptr<Window> window, RunLoop& runLoop, std::shared_ptr<HostedView> view);

  void scheduleUpdate();
  void update();
  void didClose();

  std::unique_ptr<Window> window_;
  RunLoop& runLoop_;
  std::shared_ptr<HostedView> view_;
  Observable::Subscription subscription_;
  bool isOpen_ = false;
  bool isUpdateScheduled_ = false;
  std::uint64_t updates_ = 0;  // begun so far
};

}  // namespace kivra
