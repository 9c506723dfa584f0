#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kivra {

/// Something that announces its changes. Observers are called synchronously, before the change; an
/// observer that drops its subscription is called no more. Main thread only.
class Observable {
 public:
  using Observer = std::function<void()>;
  using Subscription = std::shared_ptr<const Observer>;

  Observable() = default;
  Observable(const Observable&) = delete;
  Observable& operator=(const Observable&) = delete;

  /// Calls `observer` before every change for as long as the answer is kept.
  [[nodiscard]] Subscription observe(Observer observer) {
    auto subscription = std::make_shared<const Observer>(std::move(observer));
    observers_.push_back(subscription);
    return subscription;
  }

 protected:
  ~Observable() = default;

  void willChange() {
    std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
    const auto current = observers_;  // an observer may add or drop others
    for (const auto& observer : current) {
      if (const auto alive = observer.lock()) (*alive)();
    }
  }

 private:
  std::vector<std::weak_ptr<const Observer>> observers_;
};

}  // namespace kivra
