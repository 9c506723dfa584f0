#pragma once

#include <functional>
#include <map>
#include <utility>

#include "platform/keychain.h"

namespace kivra::embedded {

/// A keychain in memory.
class EmbeddedKeychain : public Keychain {
 public:
  /// Happens once, while the next answer is waited for.
  void setMeanwhile(std::function<void()> happens) { meanwhile_ = std::move(happens); }

  std::optional<std::string> itemCopyMatching(const KeychainItem& item) override;
  KeychainStatus itemUpdate(const KeychainItem& item, std::string_view data) override;
  KeychainStatus itemAdd(const KeychainItem& item, std::string_view data) override;
  KeychainStatus itemDelete(const KeychainItem& item) override;

 private:
  using Key = std::pair<std::string, std::string>;
  static Key keyOf(const KeychainItem& item) { return {item.service, item.account}; }

  void wait() {
    std::exchange(meanwhile_, [] {})();
  }

  std::map<Key, std::string> items_;
  std::function<void()> meanwhile_ = [] {};
};

}  // namespace kivra::embedded
