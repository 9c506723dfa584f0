#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace kivra::soak {

/// A program to type in.
struct Program {
  std::string name;
  std::function<void()> clear;  ///< empties its text
  /// Waits for the text, or a minute, and answers the text that it has.
  std::function<std::string(const std::string& expected)> text;
};

/// A session's keyboard, in somebody's hands.
class Hands {
 public:
  virtual ~Hands() = default;
  /// Before a text: the English layout, nothing pressed.
  virtual void prepare() = 0;
  virtual void type(const std::string& text, std::chrono::milliseconds pace, bool isRolling) = 0;
  /// Whether, behind a text, no key is down and the locks are as they were before it.
  virtual bool areOffTheKeys() = 0;
};

using Paces = std::vector<std::chrono::milliseconds>;

/// Editors fall behind what comes at a few ms a key.
inline constexpr std::chrono::seconds editorPatience{60};

/// Types words with a correction in each into the program, at every pace, rolling and not, and
/// prints a row for each. Whether no letter was lost, doubled or misplaced, and every word
/// corrected from 2 ms a key on.
bool fillTable(const std::string& server, const Program& program, Hands& hands, int words,
               const Paces& paces);

}  // namespace kivra::soak
