#include <algorithm>
#include <array>

#include "support/json.h"
#include "support/text.h"
#include "why.h"

namespace kivra::control {

namespace {

/// In the order of Question.
constexpr std::array questionTexts = {
    "looks like a password?",
    "replaced by your dictionary?",
    "are words mended at all?",
    "learned as one to leave alone?",
    "a short name in a sentence?",
    "a word of one letter here?",
    "a word of one letter there?",
    "only letters in the other layout?",
    "a word here?",
    "a word in the other layout?",
    "only letters?",
    "starts with two capitals?",
    "long enough to be respelled?",
    "is there a likely spelling?",
    "is it close enough?",
};
static_assert(questionTexts.size() == std::size(questionNames));

struct ChangeNames {
  const char* name;  ///< in JSON
  const char* text;
};

/// In the order of UndoStack::ActionKind, behind the one for no change.
constexpr std::array changeNames = {
    ChangeNames{"none", "left alone"},
    ChangeNames{"layoutSwitch", "retyped in the other layout"},
    ChangeNames{"doubleCapital", "the second capital made small"},
    ChangeNames{"replacement", "replaced by your dictionary"},
    ChangeNames{"translate", "translated"},
    ChangeNames{"correct", "respelled"},
};

const char* textOf(Question question) { return questionTexts[static_cast<std::size_t>(question)]; }

const ChangeNames& namesOf(const std::optional<UndoStack::ActionKind>& change) {
  return changeNames[change ? static_cast<std::size_t>(*change) + 1 : 0];
}

std::string padded(const std::string& text, std::size_t width) {
  const auto count = text::characterCount(text);
  return text + std::string(count < width ? width - count : 0, ' ');
}

std::string line(const Asked& asked, std::size_t width) {
  auto text = "  " + padded(asked.about, width) + "  " + padded(textOf(asked.question), 35) +
              (asked.isYes ? "yes" : "no");
  if (asked.question == Question::close) text += ", distance " + std::to_string(asked.distance);
  return text + '\n';
}

}  // namespace

std::string explanationText(const std::vector<Explanation>& explanations) {
  std::string text;
  for (const auto& [layout, typed, asked, change, result] : explanations) {
    if (!text.empty()) text += '\n';
    text.append("Layout ").append(layout).append(": the keys give ").append(typed).append("\n");
    std::size_t width = 0;
    for (const auto& one : asked) width = std::max(width, text::characterCount(one.about));
    for (const auto& one : asked) text += line(one, width);
    text += "  -> " + std::string(text::trimmed(result)) + " (" + namesOf(change).text + ")\n";
  }
  return text;
}

std::string explanationJson(const std::vector<Explanation>& explanations) {
  auto array = json::Value::array();
  for (const auto& [layout, typed, asked, change, result] : explanations) {
    auto questions = json::Value::array();
    for (const auto& one : asked) {
      json::Value question = {
          {"question", name(one.question)}, {"answer", one.isYes}, {"about", one.about}};
      if (one.question == Question::close) question["distance"] = one.distance;
      questions.push_back(std::move(question));
    }
    array.push_back({{"layout", layout},
                     {"typed", typed},
                     {"questions", std::move(questions)},
                     {"change", namesOf(change).name},
                     {"result", text::trimmed(result)}});
  }
  return json::encode(array) + '\n';
}

}  // namespace kivra::control
