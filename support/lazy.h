#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace kivra {

/// An object made at its first use. Main thread only.
template <class T>
class Lazy {
 public:
  using Maker = std::function<std::shared_ptr<T>()>;

  explicit Lazy(Maker make) : make_(std::move(make)) {}

  T& operator()() { return *pointer(); }

  const std::shared_ptr<T>& pointer() {
    if (!object_) object_ = make_();
    return object_;
  }

 private:
  Maker make_;
  std::shared_ptr<T> object_;
};

}  // namespace kivra
