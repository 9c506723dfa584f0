#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/http_client.h"
#include "platform/translation.h"

namespace kivra {

/// A LibreTranslate server on this machine.
class LibreTranslate {
 public:
  /// `wait` is how soon it has to say which languages it has, or it counts as absent.
  LibreTranslate(HttpClient& http, std::uint16_t port, std::chrono::milliseconds wait);

  /// The pair in the server's own codes, "auto" where the source is not known; nothing when no
  /// server answers soon or it has no such pair.
  void pair(const TranslationLanguages& languages,
            std::function<void(std::optional<TranslationLanguages>)> done);

  void translate(const std::string& text, const TranslationLanguages& pair,
                 Completion<std::string> completion);

 private:
  HttpClient& http_;
  std::string address_;
  std::chrono::milliseconds wait_;
};

}  // namespace kivra
