#pragma once

#include <cstddef>
#include <string>

#include "platform/embedded/effects.h"
#include "platform/input_sources.h"

namespace kivra::embedded {

/// Enabled input sources whose layouts are real xkb layouts.
class EmbeddedInputSources : public InputSources {
 public:
  using Source = std::shared_ptr<const InputSource>;

  explicit EmbeddedInputSources(Effects& effects);

  std::optional<std::vector<Source>> createInputSourceList() override { return sources_; }
  Source copyCurrentKeyboardInputSource() override { return current_; }
  void selectInputSource(const InputSource& source) override;
  std::uint32_t keyboardType() override { return 0; }
  std::optional<std::string> keyTranslate(const KeyboardLayoutData& layout, std::uint16_t keyCode,
                                          std::uint32_t modifierState,
                                          std::uint32_t keyboardType) override;

  /// Enables these sources in place of the others and selects the first.
  void setSources(std::vector<Source> sources);

  /// The user selects a source; false when none has this identifier.
  bool select(const std::string& id);

  /// A source with the xkb layout of this name; null when there is no such layout.
  static Source keyboardSource(const std::string& id, std::vector<std::string> languages,
                               const std::string& layout);

 private:
  Source find(const std::string& id) const;

  Effects& effects_;
  std::vector<Source> sources_;
  Source current_;
};

}  // namespace kivra::embedded
