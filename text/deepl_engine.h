#pragma once

#include <string>
#include <vector>

#include "platform/http_client.h"
#include "support/json.h"
#include "text/keychain_store.h"
#include "text/text_engine.h"

namespace kivra {

/// The DeepL HTTP service: translation, and correction by rephrasing. Reads the user's key for
/// every request; without one it fails with `notConfigured` and sends nothing. Nothing is retried.
class DeepLEngine : public TextEngine {
 public:
  DeepLEngine(HttpClient& http, KeychainStore& keychain) : http_(http), keychain_(keychain) {}

  Task<std::string> translate(std::string text, std::string target,
                              std::optional<std::string> source) override;
  Task<std::string> correct(std::string text) override;

  /// The API host for this key.
  static const char* hostForKey(std::string_view key);

 private:
  /// The texts that the reply holds under `list`.
  Task<std::vector<std::string>> post(std::string path, json::Value body, std::string list);

  HttpClient& http_;
  KeychainStore& keychain_;
};

}  // namespace kivra
