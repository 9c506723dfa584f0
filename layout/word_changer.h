#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "layout/history_entry.h"
#include "layout/key_output.h"
#include "layout/typed_since.h"
#include "layout/undo_stack.h"

namespace kivra {

/// What is typed in place of the text before the cursor, in this order.
struct Typing {
  std::size_t deletes = 0;
  const Layout* select = nullptr;     ///< the layout to select first; null leaves the source alone
  std::string text{};                 ///< typed as Unicode text
  std::vector<HistoryEntry> words{};  ///< retyped, each followed by its trigger
};

/// Makes the automatic changes of the text just typed and records how each is rolled back. The
/// recorded undo does nothing once the changer is gone. Under the extended rules it goes back over
/// what was typed since, and does not fit once the cursor may have left that place.
class WordChanger : public std::enable_shared_from_this<WordChanger> {
 public:
  WordChanger(KeyOutput& output, UndoStack& undoStack, const TypedSince& since)
      : output_(output), undoStack_(undoStack), since_(since) {}

  /// Follows what is typed behind the last change; the caller tells it.
  TypedSince& since() { return since_; }

  void change(UndoStack::ActionKind kind, const std::string& learnedToken, const Typing& typing,
              Typing undo);

  void type(const Typing& typing);

 private:
  void rollBack(const Typing& undo);

  KeyOutput& output_;
  UndoStack& undoStack_;
  TypedSince since_;
};

}  // namespace kivra
