#pragma once

#include <optional>
#include <string>

#include "support/task.h"

namespace kivra {

/// Translates and corrects text. Both operations may fail with a TextEngineError or a
/// PlatformError. Must outlive the tasks that it returns, or the owner that they were started with.
class TextEngine {
 public:
  virtual ~TextEngine() = default;

  /// Language codes are those of the language list ("EN-US", "RU"); without a source the engine
  /// finds it out.
  virtual Task<std::string> translate(std::string text, std::string target,
                                      std::optional<std::string> source) = 0;

  virtual Task<std::string> correct(std::string text) = 0;
};

}  // namespace kivra
