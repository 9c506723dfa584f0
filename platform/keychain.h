#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kivra {

/// Which generic password is meant.
struct KeychainItem {
  std::string service;
  std::string account;

  bool operator==(const KeychainItem&) const = default;
};

/// Answers of the keychain, with the platform's numbers; others stand for other failures.
enum class KeychainStatus : std::int32_t {
  success = 0,
  notAvailable = -25291,
  itemNotFound = -25300,
};

/// Takes the bytes of an item; nothing when there is none, or when it cannot be read.
using KeychainCompletion = std::function<void(std::optional<std::string>)>;

/// Secrets of the user, kept by the system. Answers at once or keeps the run loop turning while it
/// waits for the service. A secret is never written anywhere else, not even when there is no
/// service.
class Keychain {
 public:
  virtual ~Keychain() = default;

  /// The bytes of the item; nothing when there is none, or when it cannot be read.
  virtual std::optional<std::string> itemCopyMatching(const KeychainItem& item) = 0;

  /// Whether the service may ask the user to unlock it before it answers.
  virtual bool mayAskUser() { return false; }

  /// Calls `completion` with what `itemCopyMatching` answers: at once or, where the user is asked,
  /// as soon as they have unlocked the service, however long that takes. Never where they never do.
  virtual void itemCopyMatchingLater(const KeychainItem& item,
                                     const KeychainCompletion& completion) {
    completion(itemCopyMatching(item));
  }

  /// `itemNotFound` when there is nothing to update.
  virtual KeychainStatus itemUpdate(const KeychainItem& item, std::string_view data) = 0;
  /// Takes the place of an item that is there.
  virtual KeychainStatus itemAdd(const KeychainItem& item, std::string_view data) = 0;
  /// Where there is nothing to delete, some services say so and others that it is done.
  virtual KeychainStatus itemDelete(const KeychainItem& item) = 0;
};

}  // namespace kivra
