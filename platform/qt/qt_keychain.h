#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/keychain.h"

namespace QKeychain {
class Job;
}

namespace kivra::qt {

/// The desktop's secret service or wallet, by QtKeychain. Needs a QCoreApplication, whose event
/// loop it keeps turning while it waits.
class QtKeychain : public Keychain {
 public:
  struct Options {
    /// How long to wait for the service, which may be asking the user to unlock it; then the item
    /// counts as not readable.
    std::chrono::milliseconds wait{10000};
    /// Is told in a line when the service did not answer in that time; may be empty.
    std::function<void(std::string_view)> report{};
  };

  QtKeychain() : QtKeychain(Options{}) {}
  explicit QtKeychain(Options options) : options_(std::move(options)) {}

  std::optional<std::string> itemCopyMatching(const KeychainItem& item) override;
  bool mayAskUser() override { return true; }
  void itemCopyMatchingLater(const KeychainItem& item,
                             const KeychainCompletion& completion) override;
  KeychainStatus itemUpdate(const KeychainItem& item, std::string_view data) override;
  KeychainStatus itemAdd(const KeychainItem& item, std::string_view data) override;
  KeychainStatus itemDelete(const KeychainItem& item) override;

 private:
  struct Answer {
    KeychainStatus status = KeychainStatus::notAvailable;
    std::string data;
  };

  static Answer answerOf(const QKeychain::Job& job);
  Answer run(QKeychain::Job& job);

  Options options_;
};

}  // namespace kivra::qt
