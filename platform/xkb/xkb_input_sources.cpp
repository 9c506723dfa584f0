#include "platform/xkb/xkb_input_sources.h"

#include <algorithm>
#include <utility>

namespace kivra {

std::optional<std::string> XkbInputSources::keyTranslate(const KeyboardLayoutData& layout,
                                                         std::uint16_t keyCode,
                                                         std::uint32_t modifierState,
                                                         std::uint32_t /*keyboardType*/) {
  const auto* xkb = dynamic_cast<const XkbLayout*>(&layout);
  return xkb == nullptr ? std::nullopt
                        : xkb->character(keyCode, (modifierState & translateShift) != 0);
}

XkbInputSources::Source XkbInputSources::keyboardSource(
    std::string id, std::optional<std::vector<std::string>> languages,
    std::shared_ptr<const XkbLayout> layout) {
  return std::make_shared<const InputSource>(
      InputSource{.id = std::move(id),
                  .category = keyboardInputSourceCategory,
                  .isSelectCapable = true,
                  .languages = std::move(languages),
                  .unicodeKeyLayoutData = std::move(layout)});
}

std::optional<std::size_t> XkbInputSources::placeOf(const std::string& id,
                                                    const std::vector<Source>& sources) {
  const auto found =
      std::ranges::find(sources, id, [](const Source& source) { return source->id; });
  if (found == sources.end()) return std::nullopt;
  return static_cast<std::size_t>(found - sources.begin());
}

}  // namespace kivra
