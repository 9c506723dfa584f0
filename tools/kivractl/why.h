#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "layout/questions.h"
#include "layout/undo_stack.h"
#include "platform/defaults_database.h"

namespace kivra::control {

/// A question of the decision with its answer, kept.
struct Asked {
  Question question;
  bool isYes = false;
  std::string about;
  std::size_t distance = 0;
};

/// What Kivra makes of keys that are typed while one layout is selected.
struct Explanation {
  std::string layout;
  std::string typed;  ///< what the keys give there
  std::vector<Asked> asked{};
  std::optional<UndoStack::ActionKind> change{};  ///< the last one; none when all was left alone
  std::string result{};                           ///< what stands in the text field
};

/// Identifier (the name of an xkb layout) and language of an enabled layout.
using LayoutNames = std::vector<std::pair<std::string, std::string>>;

/// Types the text, with a Space behind it, in each layout into a text field in memory, in which the
/// program runs with the user's stored values. Nothing is read but these, and nothing is kept.
std::vector<Explanation> explain(const std::string& text, DefaultsDatabase& stored,
                                 const LayoutNames& layouts);

std::string explanationText(const std::vector<Explanation>& explanations);
std::string explanationJson(const std::vector<Explanation>& explanations);

}  // namespace kivra::control
