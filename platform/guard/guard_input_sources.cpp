#include "platform/guard/guard_input_sources.h"

#include <xkbcommon/xkbcommon.h>

#include <algorithm>

#include "platform/xkb/session_layouts.h"

namespace kivra::guard {

void GuardInputSources::meetGroup(std::optional<std::uint32_t> group) {
  if (!group) lastGroup_ = groupOfEvent_;
  groupOfEvent_ = group;
}

std::optional<std::vector<GuardInputSources::Source>> GuardInputSources::createInputSourceList() {
  read();
  if (sources_.empty()) return std::nullopt;
  return sources_;
}

GuardInputSources::Source GuardInputSources::copyCurrentKeyboardInputSource() {
  read();
  auto group = groupOfEvent_ ? groupOfEvent_ : display_.group();
  if (!group) group = lastGroup_;
  return group && *group < sources_.size() ? sources_[*group] : nullptr;
}

void GuardInputSources::selectInputSource(const InputSource& source) {
  read();
  const auto place = placeOf(source.id, sources_);
  if (!place) return;
  const auto group = static_cast<std::uint32_t>(*place);
  posted_.add({.kind = PostedKey::Kind::selectGroup, .value = group});
  (groupOfEvent_ ? groupOfEvent_ : lastGroup_) = group;
}

void GuardInputSources::read() {
  if (isRead_ || !display_.isConnected()) return;
  isRead_ = true;
  sources_.clear();
  auto* const keymap = display_.newKeymap();
  if (keymap == nullptr) {
    log_.log("Kivra: раскладку клавиатуры не удалось прочитать");
    return;
  }
  const auto layouts = sessionLayouts(keymap, display_.rulesNames());
  for (std::size_t i = 0; i < layouts.size(); ++i) {
    const auto& [id, languages] = layouts[i];
    sources_.push_back(keyboardSource(
        id.empty() ? "#" + std::to_string(i + 1) : id,
        languages.empty() ? std::nullopt : std::optional(languages),
        std::make_shared<const XkbLayout>(xkb_keymap_ref(keymap), static_cast<std::uint32_t>(i))));
  }
  xkb_keymap_unref(keymap);
  reportMissingLanguages();
}

void GuardInputSources::reportMissingLanguages() {
  for (const auto* language : {"ru", "en"}) {
    const auto isThere = std::ranges::any_of(sources_, [language](const auto& source) {
      return source->languages && source->languages->front() == language;
    });
    if (!isThere) {
      log_.log(std::string("Kivra: в сеансе нет раскладки языка ") + language +
               ", слова не исправляются: добавьте её в настройках клавиатуры");
    }
  }
}

}  // namespace kivra::guard
