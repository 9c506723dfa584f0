#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "layout/keystroke.h"
#include "platform/input_sources.h"

namespace kivra {

/// The Russian and the English input source and what the keys produce in them. The sources are
/// looked up once, when the map is made; every character comes from the sources' own layout data.
class KeycodeMap {
 public:
  /// An enabled input source of one language.
  class Layout {
   public:
    Layout(std::shared_ptr<const InputSource> source, std::string language,
           InputSources& inputSources);

    const InputSource& source() const { return *source_; }
    const std::string& language() const { return language_; }

    /// What the key produces; nothing for a key without a character and for a dead key.
    std::optional<std::string> character(std::uint16_t keyCode, bool shift) const;

   private:
    std::optional<std::string> translate(std::uint16_t keyCode, bool shift) const;

    // Codes up to here are translated once: the keys of real keyboards.
    static constexpr std::uint16_t cachedKeys = 128;

    std::shared_ptr<const InputSource> source_;
    std::string language_;
    InputSources* inputSources_;
    std::array<std::array<std::optional<std::string>, 2>, cachedKeys> characters_;
  };

  explicit KeycodeMap(InputSources& inputSources);

  /// Null when no matching source is enabled.
  const Layout* russian() const { return russian_ ? &*russian_ : nullptr; }
  const Layout* english() const { return english_ ? &*english_ : nullptr; }

  /// The first language code of the current input source.
  std::optional<std::string> currentLanguage() const;

  /// What the keystrokes produce in the layout, each on its own, concatenated.
  static std::string text(const Word& word, const Layout& layout);

  /// Whether the key gives a letter or a digit in one of the two layouts, and so belongs to words
  /// in both. No key does while a layout is missing.
  bool isWordKey(std::uint16_t keyCode, bool shift) const;

  /// Whether the key belongs to no word and gives a mark of punctuation in one of the two layouts.
  bool isMark(std::uint16_t keyCode, bool shift) const;

  /// All such keys of real keyboards.
  std::vector<Keystroke> marks() const;

 private:
  void discover();
  static bool givesLetterOrDigit(const Layout& layout, std::uint16_t keyCode, bool shift);
  bool computeIsWordKey(std::uint16_t keyCode, bool shift) const;

  static constexpr std::uint16_t cachedKeys = 128;

  InputSources& inputSources_;
  std::optional<Layout> russian_;
  std::optional<Layout> english_;
  std::array<std::array<bool, 2>, cachedKeys> wordKeys_{};
};

using Layout = KeycodeMap::Layout;

}  // namespace kivra
