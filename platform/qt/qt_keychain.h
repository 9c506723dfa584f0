#pragma once

#include <chrono>

#include "platform/keychain.h"

namespace kivra::qt {

/// The desktop's secret service or wallet, by QtKeychain. Needs a QCoreApplication, whose event
/// loop it keeps turning while it waits.
class QtKeychain : public Keychain {
 public:
  struct Options {
    /// How long to wait for the service, which may be asking the user to unlock it; then the item
    /// counts as not readable.
    std::chrono::milliseconds wait{10000};
  };

  QtKeychain() : QtKeychain(Options{}) {}
  explicit QtKeychain(Options options) : options_(options) {}

  std::optional<std::string> itemCopyMatching(const KeychainItem& item) override;
  KeychainStatus itemUpdate(const KeychainItem& item, std::string_view data) override;
  KeychainStatus itemAdd(const KeychainItem& item, std::string_view data) override;
  KeychainStatus itemDelete(const KeychainItem& item) override;

 private:
  Options options_;
};

}  // namespace kivra::qt
