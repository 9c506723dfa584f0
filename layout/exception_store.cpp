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
  save();
}

bool ExceptionStore::remove(std::string_view token) {
  // Stored by others it may have capitals.
  const auto asStored = tokens_.find(token);
  if (asStored != tokens_.end()) {
    tokens_.erase(asStored);
  } else if (tokens_.erase(text::lowercased(token)) == 0) {
    return false;
  }
  save();
  return true;
}

void ExceptionStore::save() {
  defaults_.set(std::vector<std::string>(tokens_.begin(), tokens_.end()), exceptionsKey);
}

}  // namespace kivra
