#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/completion.h"

namespace kivra {

/// What can be done for a pair of languages: translate now; translate once its language pack is
/// there; nothing.
enum class TranslationStatus { installed, supported, unsupported };

/// The languages of a session, by identifiers such as "ru", "en-US", "zh-Hans".
struct TranslationLanguages {
  std::optional<std::string> source;  ///< nothing: found out from the text
  std::string target;

  bool operator==(const TranslationLanguages&) const = default;
};

/// Translates between two languages.
class TranslationSession {
 public:
  virtual ~TranslationSession() = default;

  /// Gets the language pack that translating `text` needs, with the user's consent; done at once
  /// when it is there. Fails when the user refuses and when it cannot be had.
  virtual void prepareTranslation(std::string text, Completion<std::monostate> completion) = 0;

  /// The translation. Fails when there is none; an empty one of a text that is not blank is none.
  virtual void translate(std::string text, Completion<std::string> completion) = 0;
};

/// The system's offline translator.
class Translation {
 public:
  virtual ~Translation() = default;

  /// The status for a text; without a source language the text decides. Never fails: what cannot be
  /// found out is unsupported.
  virtual void status(TranslationLanguages languages, std::string text,
                      Completion<TranslationStatus> completion) = 0;

  /// A session, which may be dropped before it has answered. Never null.
  virtual std::shared_ptr<TranslationSession> session(TranslationLanguages languages) = 0;
};

}  // namespace kivra
