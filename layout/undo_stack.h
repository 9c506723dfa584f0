#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace kivra {

/// The last automatic change, with the means to roll it back. There is room for one: a new action
/// replaces the one before.
class UndoStack {
 public:
  enum class ActionKind { layoutSwitch, doubleCapital, replacement, translate, correct };

  struct Action {
    ActionKind kind = ActionKind::layoutSwitch;
    std::optional<std::string> learnedToken;  ///< learned as an exception once it is undone
    std::function<void()> undo;
    /// Whether the cursor is still where the undo belongs; empty where that is not known.
    std::function<bool()> fits{};
  };

  const std::optional<Action>& last() const { return last_; }
  void setLast(Action action) { last_ = std::move(action); }

  /// The last action; the stack is empty from then on.
  std::optional<Action> takeLast() { return std::exchange(last_, std::nullopt); }

 private:
  std::optional<Action> last_;
};

}  // namespace kivra
