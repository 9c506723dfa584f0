// Builds the indexes of the installed dictionaries into a folder that has the frequency files, so
// that no user's first start has to: kivra-build-indexes FOLDER

#include <cstdio>

#include "platform/spelling/hunspell_spell_checker.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: kivra-build-indexes FOLDER\n");
    return 2;
  }
  kivra::HunspellSpellChecker::Options options;
  options.dictionaryDirectories = {"/usr/share/hunspell"};
  options.dataDirectories = {argv[1]};
  options.cacheDirectory = argv[1];
  kivra::HunspellSpellChecker checker(options);
  checker.waitUntilLoaded();
  return checker.availableLanguages().size() == options.languages.size() ? 0 : 1;
}
