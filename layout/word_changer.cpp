#include "layout/word_changer.h"

#include <utility>

namespace kivra {

void WordChanger::change(UndoStack::ActionKind kind, const std::string& learnedToken,
                         const Typing& typing, Typing undo) {
  type(typing);
  since_.begin();
  undoStack_.setLast({kind, learnedToken,
                      [weak = weak_from_this(), undo = std::move(undo)] {
                        if (const auto changer = weak.lock()) changer->rollBack(undo);
                      },
                      [weak = weak_from_this()] {
                        const auto changer = weak.lock();
                        return !changer || !changer->since_.isFollowed() ||
                               changer->since_.isWithinReach();
                      }});
}

void WordChanger::rollBack(const Typing& undo) {
  if (!since_.isFollowed()) return type(undo);
  output_.postDeletes(since_.characters().size());
  type(undo);
  for (const auto& character : since_.characters()) output_.typeText(character);
}

void WordChanger::type(const Typing& typing) {
  output_.postDeletes(typing.deletes);
  if (typing.select != nullptr) output_.selectLayout(*typing.select);
  output_.typeText(typing.text);
  for (const auto& [word, trigger] : typing.words) {
    output_.retype(word);
    output_.retype({trigger});
  }
}

}  // namespace kivra
