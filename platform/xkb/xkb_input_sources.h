#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/input_sources.h"
#include "platform/xkb/xkb_layout.h"

namespace kivra {

/// What input sources with xkb layouts have in common, wherever they are listed and selected.
class XkbInputSources : public InputSources {
 public:
  using Source = std::shared_ptr<const InputSource>;

  std::uint32_t keyboardType() override { return 0; }
  std::optional<std::string> keyTranslate(const KeyboardLayoutData& layout, std::uint16_t keyCode,
                                          std::uint32_t modifierState,
                                          std::uint32_t keyboardType) override;

 protected:
  static Source keyboardSource(std::string id, std::optional<std::vector<std::string>> languages,
                               std::shared_ptr<const XkbLayout> layout);

  /// The place of the source with this identifier; nothing when there is none.
  static std::optional<std::size_t> placeOf(const std::string& id,
                                            const std::vector<Source>& sources);
};

}  // namespace kivra
