#include "text/keychain_store.h"

#include <utility>

#include "support/text.h"

namespace kivra {

namespace {

std::optional<std::string> textOf(std::optional<std::string> data) {
  return data && text::isValidUtf8(*data) ? std::move(data) : std::nullopt;
}

}  // namespace

std::optional<std::string> KeychainStore::read(const std::string& account) {
  return textOf(keychain_.itemCopyMatching({service_, account}));
}

void KeychainStore::readLater(const std::string& account,
                              std::function<void(std::optional<std::string>)> completion) {
  keychain_.itemCopyMatchingLater({service_, account}, [called = std::move(completion)](auto data) {
    called(textOf(std::move(data)));
  });
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
