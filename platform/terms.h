#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kivra {

/// What the program's texts name of a desktop, and each desktop calls by words of its own.
enum class Term : std::uint8_t {
  control,
  option,
  shift,
  command,
  fn,
  betweenKeys,  ///< stands between the names of keys that are pressed together
  escapeKey,
  shortcutExample,    ///< of a combination that applications use
  correctionExample,  ///< the hotkey of the correction that the program comes with
  spellingDictionary,
  systemSettings,      ///< on a button of its own
  openSystemSettings,  ///< as an invitation
  inKeychain,          ///< where a secret is kept
  offlineTranslator,
  localModel,
  localModelMissing,
  withoutLocalModel,  ///< a condition, in the middle of a sentence
};

/// The words of one desktop.
class Terms {
 public:
  virtual ~Terms() = default;

  virtual std::string term(Term term) const = 0;

  /// What the user calls the key with this virtual key code; nothing where the program's own name
  /// will do.
  virtual std::optional<std::string> keyName(std::uint16_t keyCode) const = 0;
};

}  // namespace kivra
