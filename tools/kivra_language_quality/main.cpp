// Prints how many short sentences the language recogniser gets right:
//
//   kivra-language-quality SENTENCES.tsv
//
// The file holds lines "language<TAB>sentence".

#include <cstdio>
#include <fstream>

#include "language_quality.h"
#include "platform/language/cld2_language_recognizer.h"

int main(int count, char** values) {
  std::ifstream file(count == 2 ? values[1] : "");
  if (!file) {
    std::fputs("usage: kivra-language-quality SENTENCES.tsv\n", stderr);
    return 2;
  }
  kivra::Cld2LanguageRecognizer recognizer;
  std::size_t sentences = 0;
  std::size_t right = 0;
  for (const auto& [language, shares] : kivra::quality::recognizedByLanguage(recognizer, file)) {
    std::printf("%-4s %3zu of %3zu\n", language.c_str(), shares.right, shares.sentences);
    for (const auto& mistake : shares.mistakes) std::printf("       %s\n", mistake.c_str());
    sentences += shares.sentences;
    right += shares.right;
  }
  const auto share =
      sentences == 0 ? 0.0 : 100.0 * static_cast<double>(right) / static_cast<double>(sentences);
  std::printf("all  %3zu of %3zu  %.1f %%\n", right, sentences, share);
  return 0;
}
