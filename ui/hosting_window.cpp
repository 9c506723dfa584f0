#include "ui/hosting_window.h"

#include <chrono>
#include <utility>

#include "support/weakly.h"

namespace kivra {

std::shared_ptr<HostingWindow> HostingWindow::create(Windows& windows, RunLoop& runLoop,
                                                     const std::string& name,
                                                     const std::string& title,
                                                     std::shared_ptr<HostedView> view) {
  auto window = windows.windowCreate({.name = name,
                                      .title = title,
                                      .styleMask = window_styles::titled | window_styles::closable,
                                      .contentSize = std::nullopt});
  std::shared_ptr<HostingWindow> hosting(
      new HostingWindow(std::move(window), runLoop, std::move(view)));
  const std::weak_ptr<HostingWindow> weak = hosting;
  hosting->window_->setCloseHandler(weakly(weak, [](HostingWindow& self) { self.didClose(); }));
  hosting->subscription_ =
      hosting->view_->observe(weakly(weak, [](HostingWindow& self) { self.scheduleUpdate(); }));
  hosting->update();
  hosting->window_->center();
  return hosting;
}

HostingWindow::HostingWindow(std::unique_ptr<Window> window, RunLoop& runLoop,
                             std::shared_ptr<HostedView> view)
    : window_(std::move(window)), runLoop_(runLoop), view_(std::move(view)) {}

void HostingWindow::makeKeyAndOrderFront() {
  if (!std::exchange(isOpen_, true)) {
    view_->onAppear();
    update();
  }
  window_->makeKeyAndOrderFront();
}

// A change is announced before it is made.
void HostingWindow::scheduleUpdate() {
  if (std::exchange(isUpdateScheduled_, true)) return;
  runLoop_.asyncAfter(std::chrono::microseconds(0),
                      weakly(weak_from_this(), [](HostingWindow& self) { self.update(); }));
}

void HostingWindow::update() {
  isUpdateScheduled_ = false;
  const auto number = ++updates_;
  auto content = view_->body();
  // A body that asks a slow service keeps the run loop turning; it may have been overtaken.
  if (number == updates_) window_->setContent(std::move(content));
}

void HostingWindow::didClose() {
  if (std::exchange(isOpen_, false)) view_->onDisappear();
}

}  // namespace kivra
