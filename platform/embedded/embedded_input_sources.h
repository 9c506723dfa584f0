#pragma once

#include <string>

#include "platform/embedded/effects.h"
#include "platform/xkb/xkb_input_sources.h"

namespace kivra::embedded {

/// Enabled input sources whose layouts are real xkb layouts.
class EmbeddedInputSources : public XkbInputSources {
 public:
  explicit EmbeddedInputSources(Effects& effects);

  std::optional<std::vector<Source>> createInputSourceList() override { return sources_; }
  Source copyCurrentKeyboardInputSource() override { return current_; }
  void selectInputSource(const InputSource& source) override;

  /// Enables these sources in place of the others and selects the first.
  void setSources(std::vector<Source> sources);

  /// The user selects a source; false when none has this identifier.
  bool select(const std::string& id);

  /// A source with the xkb layout of this name; null when there is no such layout.
  static Source keyboardSource(const std::string& id, std::vector<std::string> languages,
                               const std::string& layout);

 private:
  Effects& effects_;
  std::vector<Source> sources_;
  Source current_;
};

}  // namespace kivra::embedded
