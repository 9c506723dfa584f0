#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <utility>

namespace kivra::embedded {

using Json = nlohmann::ordered_json;

/// Where the embedded desktop reports what the program does to it, one object per effect, in the
/// order in which they happen.
class Effects {
 public:
  using Sink = std::function<void(const Json&)>;

  explicit Effects(Sink sink) : sink_(std::move(sink)) {}

  /// Reports what `make` returns; it is not called when nobody listens.
  template <class Make>
  void report(Make make) const {
    if (sink_) sink_(make());
  }

 private:
  Sink sink_;
};

}  // namespace kivra::embedded
