#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace kivra {

struct SelectionWaits {
  /// For an owner's next sign of life: it may be busy, or have to make the data first.
  std::chrono::milliseconds idle{3000};
  /// For all further encodings of a picture, once one has been read.
  std::chrono::milliseconds alternatives{1500};
  /// For everything together.
  std::chrono::milliseconds whole{8000};
};

/// Asks the owner of a selection for its data. Every wait is bounded.
class SelectionReader {
 public:
  using Moment = std::chrono::steady_clock::time_point;

  /// What an owner gives for a target; no bytes: it refuses, or has something else.
  struct Given {
    std::optional<std::string> bytes;
  };

  virtual ~SelectionReader() = default;

  /// The names of the targets; nothing when the owner does not answer.
  virtual std::optional<std::vector<std::string>> targets(Moment until) = 0;

  /// The data of a target; nothing when the owner stops before the end, or gives more than
  /// `mostBytes`.
  virtual std::optional<Given> read(const std::string& target, Moment until) = 0;

  static constexpr std::size_t mostBytes = 256U << 20U;
};

}  // namespace kivra
