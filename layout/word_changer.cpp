#include "layout/word_changer.h"

#include <utility>

namespace kivra {

void WordChanger::change(UndoStack::ActionKind kind, const std::string& learnedToken,
                         const Typing& typing, Typing undo) {
  type(typing);
  undoStack_.setLast({kind, learnedToken, [weak = weak_from_this(), undo = std::move(undo)] {
                        if (const auto changer = weak.lock()) changer->type(undo);
                      }});
}

void WordChanger::type(const Typing& typing) {
  output_.postDeletes(typing.deletes);
  if (typing.select != nullptr) output_.selectLayout(*typing.select);
  output_.typeText(typing.text);
  for (const auto& [word, trigger] : typing.words) {
    output_.retype(word);
    output_.postKey(trigger, 0);
  }
}

}  // namespace kivra
