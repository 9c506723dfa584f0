#include "asked_questions.h"

#include "support/text.h"

namespace kivra::events {

std::string questionLine(const Answer& answer) {
  auto line = "  asked " + std::string(name(answer.question));
  if (!answer.about.empty()) {
    line += " of " + std::to_string(text::characterCount(answer.about)) + " characters";
  }
  line += answer.isYes ? ": yes" : ": no";
  if (answer.question == Question::close) line += ", distance " + std::to_string(answer.distance);
  return line;
}

}  // namespace kivra::events
