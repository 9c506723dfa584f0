#pragma once

#include <stdexcept>
#include <string>

namespace kivra {

/// A failure of an engine. `what()` is its localized description.
class TextEngineError : public std::runtime_error {
 public:
  enum class Kind { unsupportedPair, http, unsupported, notConfigured, busy, emptyResult };

  /// `pair` names the pair of languages.
  static TextEngineError unsupportedPair(const std::string& pair);
  /// Status 0 when the answer was not HTTP.
  static TextEngineError http(int statusCode, const std::string& body);
  static TextEngineError unsupported();
  static TextEngineError notConfigured();
  static TextEngineError busy();
  static TextEngineError emptyResult();

  Kind kind() const { return kind_; }

 private:
  TextEngineError(Kind kind, const std::string& description)
      : std::runtime_error(description), kind_(kind) {}

  Kind kind_;
};

}  // namespace kivra
