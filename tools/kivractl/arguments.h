#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "control.h"

namespace kivra::control {

/// Thrown within a command, and becomes its reply.
struct Failure {
  int status;
  std::string message;
};

/// The words of a command with the options taken out.
class Arguments {
 public:
  /// Throws Failure for an option that is none of `options`, which begin with "--".
  Arguments(const std::vector<std::string>& words, const std::vector<std::string_view>& options) {
    auto areOptions = true;
    for (const auto& word : words) {
      if (areOptions && word == "--") {
        areOptions = false;
      } else if (areOptions && word.size() > 1 && word.starts_with('-')) {
        if (std::ranges::find(options, word) == options.end()) {
          throw Failure{Reply::wrongUsage, "unknown option " + word};
        }
        options_.push_back(word);
      } else {
        words_.push_back(word);
      }
    }
  }

  bool has(std::string_view option) const {
    return std::ranges::find(options_, option) != options_.end();
  }

  std::size_t count() const { return words_.size(); }
  const std::vector<std::string>& words() const { return words_; }
  std::vector<std::string> wordsFrom(std::size_t first) const {
    return {words_.begin() + static_cast<std::ptrdiff_t>(std::min(first, words_.size())),
            words_.end()};
  }

  /// The word at the position, which the usage names; throws Failure when it is missing.
  const std::string& at(std::size_t position, const std::string& name) const {
    if (position < words_.size()) return words_[position];
    throw Failure{Reply::wrongUsage, name + " is missing"};
  }

  /// Throws Failure when there are more words than so many.
  void requireAtMost(std::size_t count) const {
    if (words_.size() <= count) return;
    throw Failure{Reply::wrongUsage, "too many arguments: " + words_[count]};
  }

 private:
  std::vector<std::string> options_;
  std::vector<std::string> words_;
};

}  // namespace kivra::control
