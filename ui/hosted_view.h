#pragma once

#include <vector>

#include "platform/views.h"
#include "support/observable.h"

namespace kivra {

/// What fills a window or a part of it. Announces when its body is about to become another.
class HostedView : public Observable {
 public:
  virtual ~HostedView() = default;

  virtual View body() = 0;

  /// It came on the screen, or left it.
  virtual void onAppear() {}
  virtual void onDisappear() {}

 protected:
  /// Changes of `source` are changes of this view.
  void follow(Observable& source) {
    subscriptions_.push_back(source.observe([this] { willChange(); }));
  }

 private:
  std::vector<Subscription> subscriptions_;
};

}  // namespace kivra
