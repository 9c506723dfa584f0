#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "platform/guard/protocol/guard_protocol.h"

namespace kivra::guard {

/// What the program has posted and not yet handed to the guard, in order; shared by all that post.
class PostedKeys {
 public:
  /// `wake` is called when the first key of a series comes.
  void setWake(std::function<void()> wake) { wake_ = std::move(wake); }

  void add(const PostedKey& key) {
    keys_.push_back(key);
    if (keys_.size() == 1 && wake_) wake_();
  }

  std::vector<PostedKey> take() { return std::exchange(keys_, {}); }

 private:
  std::function<void()> wake_;
  std::vector<PostedKey> keys_;
};

}  // namespace kivra::guard
