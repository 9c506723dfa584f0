// Nothing that a store saved is lost by reopening it.

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "layout/exception_store.h"
#include "layout/replacement_store.h"
#include "platform/embedded/embedded_defaults_database.h"
#include "support/text.h"

namespace kivra {
namespace {

rc::Gen<std::string> shortText() {
  return rc::gen::container<std::string>(
      rc::gen::elementOf(std::string("ab AB\t\xD0\x96\xD0\xB6\xFF\xCC\x86")));
}

RC_GTEST_PROP(Stores, ReplacementsSurviveReopening, ()) {
  const auto pairs = *rc::gen::container<std::vector<std::pair<std::string, std::string>>>(
      rc::gen::pair(shortText(), shortText()));
  embedded::EmbeddedDefaultsDatabase database;
  UserDefaults defaults(database);
  ReplacementStore store(defaults);
  for (const auto& [pattern, replacement] : pairs) {
    store.add(text::validUtf8(pattern), text::validUtf8(replacement));
  }
  const ReplacementStore reopened(defaults);
  RC_ASSERT(reopened.entries() == store.entries());
  RC_ASSERT(reopened.index() == store.index());
  RC_ASSERT(store.index().size() == store.entries().size());
}

RC_GTEST_PROP(Stores, ExceptionsSurviveReopening, (const std::vector<std::string>& tokens)) {
  embedded::EmbeddedDefaultsDatabase database;
  UserDefaults defaults(database);
  ExceptionStore store(defaults);
  for (const auto& token : tokens) store.add(token);
  const ExceptionStore reopened(defaults);
  RC_ASSERT(reopened.tokens() == store.tokens());
  for (const auto& token : tokens) {
    RC_ASSERT(token.empty() || reopened.contains(text::lowercased(token)));
  }
}

}  // namespace
}  // namespace kivra
