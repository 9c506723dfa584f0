#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kivra {

/// Layout data of an input source: what its keys produce. Immutable, shared by its users.
class KeyboardLayoutData {
 public:
  virtual ~KeyboardLayoutData() = default;
};

inline constexpr const char* keyboardInputSourceCategory = "TISCategoryKeyboardInputSource";

/// An enabled input source with its properties; a property that cannot be read is absent.
struct InputSource {
  std::string id;
  std::optional<std::string> category;
  bool isSelectCapable = false;
  std::optional<std::vector<std::string>> languages;  ///< most important first
  std::shared_ptr<const KeyboardLayoutData> unicodeKeyLayoutData;
};

/// Modifier state of `keyTranslate`: the classic modifier word shifted right by 8.
inline constexpr std::uint32_t translateShift = 2;

/// The keyboard input sources of the session and the translation of keys through their layouts.
class InputSources {
 public:
  virtual ~InputSources() = default;

  /// The enabled sources in the system's order; nothing when the list cannot be read.
  virtual std::optional<std::vector<std::shared_ptr<const InputSource>>>
  createInputSourceList() = 0;

  /// The source in use, or null.
  virtual std::shared_ptr<const InputSource> copyCurrentKeyboardInputSource() = 0;

  /// Keys posted from now on meet this source.
  virtual void selectInputSource(const InputSource& source) = 0;

  /// The kind of the physical keyboard, for `keyTranslate`.
  virtual std::uint32_t keyboardType() = 0;

  /// What a press of the key produces (UTF-8, at most 4 UTF-16 code units), starting without a
  /// pending dead key; nothing for a key without a character and for a dead key.
  virtual std::optional<std::string> keyTranslate(const KeyboardLayoutData& layout,
                                                  std::uint16_t keyCode,
                                                  std::uint32_t modifierState,
                                                  std::uint32_t keyboardType) = 0;
};

}  // namespace kivra
