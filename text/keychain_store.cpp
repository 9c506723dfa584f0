#include "text/keychain_store.h"

#include "support/text.h"

namespace kivra {

std::optional<std::string> KeychainStore::read(const std::string& account) {
  auto data = keychain_.itemCopyMatching({service_, account});
  return data && text::isValidUtf8(*data) ? std::move(data) : std::nullopt;
}

void KeychainStore::write(const std::optional<std::string>& value, const std::string& account) {
  const KeychainItem item{service_, account};
  if (!value || value->empty()) {
    keychain_.itemDelete(item);
  } else if (keychain_.itemUpdate(item, *value) == KeychainStatus::itemNotFound) {
    keychain_.itemAdd(item, *value);
  }
}

}  // namespace kivra
