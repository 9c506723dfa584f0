#include "platform/embedded/embedded_keychain.h"

namespace kivra::embedded {

std::optional<std::string> EmbeddedKeychain::itemCopyMatching(const KeychainItem& item) {
  wait();
  const auto found = items_.find(keyOf(item));
  if (found == items_.end()) return std::nullopt;
  return found->second;
}

KeychainStatus EmbeddedKeychain::itemUpdate(const KeychainItem& item, std::string_view data) {
  wait();
  const auto found = items_.find(keyOf(item));
  if (found == items_.end()) return KeychainStatus::itemNotFound;
  found->second = data;
  return KeychainStatus::success;
}

KeychainStatus EmbeddedKeychain::itemAdd(const KeychainItem& item, std::string_view data) {
  wait();
  items_.insert_or_assign(keyOf(item), std::string(data));
  return KeychainStatus::success;
}

KeychainStatus EmbeddedKeychain::itemDelete(const KeychainItem& item) {
  wait();
  return items_.erase(keyOf(item)) > 0 ? KeychainStatus::success : KeychainStatus::itemNotFound;
}

}  // namespace kivra::embedded
