#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/keychain.h"

namespace kivra {

/// The account under which the DeepL key is kept.
inline constexpr const char* deepLKeyAccount = "deepl-api-key";

/// The program's secrets as texts in the user's keychain.
class KeychainStore {
 public:
  /// `service` is the program's own identifier.
  KeychainStore(Keychain& keychain, std::string service)
      : keychain_(keychain), service_(std::move(service)) {}

  /// Nothing when there is no such item, or it is not text in UTF-8.
  std::optional<std::string> read(const std::string& account);

  /// Whether the user may be asked before the keychain answers.
  bool mayAskUser() { return keychain_.mayAskUser(); }

  /// Calls `completion` with what `read` answers, as soon as the user has unlocked the keychain.
  void readLater(const std::string& account,
                 std::function<void(std::optional<std::string>)> completion);

  /// Stores or replaces the item; nothing or an empty value deletes it. Failures are ignored.
  void write(const std::optional<std::string>& value, const std::string& account);

 private:
  Keychain& keychain_;
  std::string service_;
};

}  // namespace kivra
