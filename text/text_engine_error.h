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

  /// The description without what a server has answered, which may repeat the text it was sent.
  const std::string& summary() const { return summary_; }

  /// Whether another engine, or a key for this one, would do.
  bool isMendedInSettings() const {
    return kind_ == Kind::notConfigured || kind_ == Kind::unsupportedPair;
  }

 private:
  TextEngineError(Kind kind, const std::string& summary, const std::string& answer = {})
      : std::runtime_error(summary + answer), kind_(kind), summary_(summary) {}

  Kind kind_;
  std::string summary_;
};

}  // namespace kivra
