#include "platform/embedded/embedded_input_sources.h"

#include <utility>

namespace kivra::embedded {

EmbeddedInputSources::EmbeddedInputSources(Effects& effects) : effects_(effects) {
  setSources({keyboardSource("us", {"en"}, "us"), keyboardSource("ru", {"ru"}, "ru")});
}

void EmbeddedInputSources::selectInputSource(const InputSource& source) {
  if (!select(source.id)) return;
  effects_.report([&] { return Json{{"selectSource", source.id}}; });
}

void EmbeddedInputSources::setSources(std::vector<Source> sources) {
  sources_ = std::move(sources);
  current_ = sources_.empty() ? nullptr : sources_.front();
}

bool EmbeddedInputSources::select(const std::string& id) {
  const auto place = placeOf(id, sources_);
  if (!place) return false;
  current_ = sources_[*place];
  return true;
}

EmbeddedInputSources::Source EmbeddedInputSources::keyboardSource(
    const std::string& id, std::vector<std::string> languages, const std::string& layout) {
  auto data = XkbLayout::named(layout);
  if (!data) return nullptr;
  return XkbInputSources::keyboardSource(id, std::move(languages), std::move(data));
}

}  // namespace kivra::embedded
