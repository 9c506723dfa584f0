#include "platform/embedded/embedded_input_sources.h"

#include <algorithm>
#include <utility>

#include "platform/xkb/xkb_layout.h"

namespace kivra::embedded {

EmbeddedInputSources::EmbeddedInputSources(Effects& effects) : effects_(effects) {
  setSources({keyboardSource("us", {"en"}, "us"), keyboardSource("ru", {"ru"}, "ru")});
}

void EmbeddedInputSources::selectInputSource(const InputSource& source) {
  if (!select(source.id)) return;
  effects_.report([&] { return Json{{"selectSource", source.id}}; });
}

std::optional<std::string> EmbeddedInputSources::keyTranslate(const KeyboardLayoutData& layout,
                                                              std::uint16_t keyCode,
                                                              std::uint32_t modifierState,
                                                              std::uint32_t /*keyboardType*/) {
  const auto* xkb = dynamic_cast<const XkbLayout*>(&layout);
  return xkb == nullptr ? std::nullopt
                        : xkb->character(keyCode, (modifierState & translateShift) != 0);
}

void EmbeddedInputSources::setSources(std::vector<Source> sources) {
  sources_ = std::move(sources);
  current_ = sources_.empty() ? nullptr : sources_.front();
}

bool EmbeddedInputSources::select(const std::string& id) {
  auto source = find(id);
  if (!source) return false;
  current_ = std::move(source);
  return true;
}

EmbeddedInputSources::Source EmbeddedInputSources::find(const std::string& id) const {
  const auto found =
      std::ranges::find(sources_, id, [](const Source& source) { return source->id; });
  return found == sources_.end() ? nullptr : *found;
}

EmbeddedInputSources::Source EmbeddedInputSources::keyboardSource(
    const std::string& id, std::vector<std::string> languages, const std::string& layout) {
  auto data = XkbLayout::named(layout);
  if (!data) return nullptr;
  return std::make_shared<const InputSource>(InputSource{.id = id,
                                                         .category = keyboardInputSourceCategory,
                                                         .isSelectCapable = true,
                                                         .languages = std::move(languages),
                                                         .unicodeKeyLayoutData = std::move(data)});
}

}  // namespace kivra::embedded
