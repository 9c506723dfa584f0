#pragma once

#include <memory>
#include <utility>

namespace kivra {

/// A closure for other objects: calls `function` with the owner, or does nothing once the owner is
/// gone.
template <class Owner, class Function>
auto weakly(std::weak_ptr<Owner> owner, Function function) {
  return [owner = std::move(owner), function = std::move(function)](auto&&... arguments) {
    if (const auto alive = owner.lock()) {
      function(*alive, std::forward<decltype(arguments)>(arguments)...);
    }
  };
}

template <class Owner, class Function>
auto weakly(const std::shared_ptr<Owner>& owner, Function function) {
  return weakly(std::weak_ptr<Owner>(owner), std::move(function));
}

}  // namespace kivra
