#include "installed_dictionaries.h"

#include <memory>

#include "platform/spelling/hunspell_spell_checker.h"

namespace kivra::desk {

SpellChecker* installedDictionaries() {
  static const auto checker = [] {
    auto loaded = std::make_unique<HunspellSpellChecker>();
    loaded->waitUntilLoaded();
    return loaded;
  }();
  return checker.get();
}

}  // namespace kivra::desk
