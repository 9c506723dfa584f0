#include "language_quality.h"

namespace kivra::quality {

std::map<std::string, Recognized> recognizedByLanguage(LanguageRecognizer& recognizer,
                                                       std::istream& sentences) {
  std::map<std::string, Recognized> result;
  for (std::string line; std::getline(sentences, line);) {
    const auto tab = line.find('\t');
    if (tab == std::string::npos) continue;
    const auto language = line.substr(0, tab);
    const auto sentence = line.substr(tab + 1);
    const auto answer = recognizer.dominantLanguage(sentence).value_or("none");
    auto& shares = result[language];
    ++shares.sentences;
    if (answer.starts_with(language)) {
      ++shares.right;
    } else {
      shares.mistakes.emplace_back(answer).append(": ").append(sentence);
    }
  }
  return result;
}

}  // namespace kivra::quality
