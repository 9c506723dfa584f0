#pragma once

#include <cstddef>
#include <vector>

namespace kivra::guard {

/// Runs through every sequence of choices that a run can make: each run asks `choose`, and `next`
/// sets out for the next run, until there is none.
class Choices {
 public:
  /// One of 0 to `count` - 1.
  std::size_t choose(std::size_t count) {
    if (position_ == digits_.size()) digits_.push_back({0, count});
    return digits_[position_++].value;
  }

  /// Whether the run goes where no run has been, with its next choice.
  bool isNew() const { return position_ == digits_.size(); }

  bool next() {
    position_ = 0;
    while (!digits_.empty() && ++digits_.back().value == digits_.back().count) digits_.pop_back();
    return !digits_.empty();
  }

 private:
  struct Digit {
    std::size_t value = 0;
    std::size_t count = 0;
  };

  std::vector<Digit> digits_;
  std::size_t position_ = 0;
};

}  // namespace kivra::guard
