#include "layout/exception_store.h"

#include <vector>

#include "support/text.h"

namespace kivra {

namespace {
constexpr auto exceptionsKey = "kivra.exceptions";
}

ExceptionStore::ExceptionStore(UserDefaults& defaults) : defaults_(defaults) {
  if (auto stored = defaults_.stringArrayForKey(exceptionsKey)) {
    tokens_.insert(stored->begin(), stored->end());
  }
}

void ExceptionStore::add(std::string_view token) {
  auto lowered = text::lowercased(token);
  if (lowered.empty()) return;
  tokens_.insert(std::move(lowered));
  defaults_.set(std::vector<std::string>(tokens_.begin(), tokens_.end()), exceptionsKey);
}

}  // namespace kivra
