#include "platform/embedded/embedded_spell_checker.h"

#include "platform/spell_checker_contract.h"

namespace kivra {
namespace {

class FixedWords {
 public:
  FixedWords() {
    checker_.setDictionary("en", {"cat", "letter", "correct"}, {{"corect", "correct"}});
    checker_.setDictionary("ru", {"кошка"}, {});
  }
  SpellChecker& checker() { return checker_; }

 private:
  embedded::EmbeddedSpellChecker checker_{nullptr};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, SpellCheckerContract, FixedWords);

}  // namespace
}  // namespace kivra
