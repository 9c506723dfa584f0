#include <algorithm>
#include <array>

#include "support/json.h"
#include "support/text.h"
#include "why.h"

namespace kivra::control {

namespace {

struct QuestionNames {
  const char* name;  ///< in JSON
  const char* text;
};

/// In the order of Question.
constexpr std::array questionNames = {
    QuestionNames{"secret", "looks like a password?"},
    QuestionNames{"dictionary", "replaced by your dictionary?"},
    QuestionNames{"automatic", "are words mended at all?"},
    QuestionNames{"learned", "learned as one to leave alone?"},
    QuestionNames{"nameHere", "a short name in a sentence?"},
    QuestionNames{"letterHere", "a word of one letter here?"},
    QuestionNames{"letterThere", "a word of one letter there?"},
    QuestionNames{"lettersThere", "only letters in the other layout?"},
    QuestionNames{"wordHere", "a word here?"},
    QuestionNames{"wordThere", "a word in the other layout?"},
    QuestionNames{"letters", "only letters?"},
    QuestionNames{"twoCapitals", "starts with two capitals?"},
    QuestionNames{"longEnough", "long enough to be respelled?"},
    QuestionNames{"guess", "is there a likely spelling?"},
    QuestionNames{"close", "is it close enough?"},
};
static_assert(questionNames.size() == static_cast<std::size_t>(Question::close) + 1);

/// In the order of UndoStack::ActionKind, behind the one for no change.
constexpr std::array changeNames = {
    QuestionNames{"none", "left alone"},
    QuestionNames{"layoutSwitch", "retyped in the other layout"},
    QuestionNames{"doubleCapital", "the second capital made small"},
    QuestionNames{"replacement", "replaced by your dictionary"},
    QuestionNames{"translate", "translated"},
    QuestionNames{"correct", "respelled"},
};

const QuestionNames& namesOf(Question question) {
  return questionNames[static_cast<std::size_t>(question)];
}

const QuestionNames& namesOf(const std::optional<UndoStack::ActionKind>& change) {
  return changeNames[change ? static_cast<std::size_t>(*change) + 1 : 0];
}

std::string padded(const std::string& text, std::size_t width) {
  const auto count = text::characterCount(text);
  return text + std::string(count < width ? width - count : 0, ' ');
}

std::string line(const Asked& asked, std::size_t width) {
  auto text = "  " + padded(asked.about, width) + "  " + padded(namesOf(asked.question).text, 35) +
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
          {"question", namesOf(one.question).name}, {"answer", one.isYes}, {"about", one.about}};
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
