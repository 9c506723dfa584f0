#include "platform/x11/x11_input_sources.h"

#include <xkbcommon/xkbcommon.h>

#include <algorithm>

#include "platform/xkb/session_layouts.h"
#include "platform/xkb/xkb_layout.h"

namespace kivra::x11 {

std::optional<std::vector<std::shared_ptr<const InputSource>>>
X11InputSources::createInputSourceList() {
  read();
  if (sources_.empty()) return std::nullopt;
  return sources_;
}

std::shared_ptr<const InputSource> X11InputSources::copyCurrentKeyboardInputSource() {
  read();
  const auto group = group_.ofEvent ? group_.ofEvent : connection_.group();
  return group && *group < sources_.size() ? sources_[*group] : nullptr;
}

void X11InputSources::selectInputSource(const InputSource& source) {
  read();
  const auto found = std::ranges::find(sources_, source.id, [](const auto& s) { return s->id; });
  if (found == sources_.end()) return;
  const auto group = static_cast<std::uint32_t>(found - sources_.begin());
  posted_.add({.kind = guard::PostedKey::Kind::selectGroup, .value = group});
  if (group_.ofEvent) group_.ofEvent = group;
}

std::optional<std::string> X11InputSources::keyTranslate(const KeyboardLayoutData& layout,
                                                         std::uint16_t keyCode,
                                                         std::uint32_t modifierState,
                                                         std::uint32_t /*keyboardType*/) {
  const auto* xkb = dynamic_cast<const XkbLayout*>(&layout);
  return xkb == nullptr ? std::nullopt
                        : xkb->character(keyCode, (modifierState & translateShift) != 0);
}

void X11InputSources::read() {
  if (isRead_ || !connection_.isConnected()) return;
  isRead_ = true;
  sources_.clear();
  auto* const keymap = connection_.newKeymap();
  if (keymap == nullptr) {
    log_.log("Kivra: раскладку клавиатуры не удалось прочитать");
    return;
  }
  const auto rules = connection_.property(connection_.root(), "_XKB_RULES_NAMES").value_or("");
  const auto layouts = sessionLayouts(rules, connection_.groupNames());
  for (std::size_t i = 0; i < layouts.size(); ++i) {
    InputSource source{.id = layouts[i].id.empty() ? "#" + std::to_string(i + 1) : layouts[i].id,
                       .category = keyboardInputSourceCategory,
                       .isSelectCapable = true,
                       .languages = std::nullopt,
                       .unicodeKeyLayoutData = std::make_shared<const XkbLayout>(
                           xkb_keymap_ref(keymap), static_cast<std::uint32_t>(i))};
    if (!layouts[i].languages.empty()) source.languages = layouts[i].languages;
    sources_.push_back(std::make_shared<const InputSource>(std::move(source)));
  }
  xkb_keymap_unref(keymap);
  reportMissingLanguages();
}

void X11InputSources::reportMissingLanguages() {
  for (const auto* language : {"ru", "en"}) {
    const auto isThere = std::ranges::any_of(sources_, [language](const auto& source) {
      return source->languages && source->languages->front() == language;
    });
    if (!isThere) {
      log_.log(std::string("Kivra: в сеансе нет раскладки языка ") + language +
               ", слова не исправляются (пример: setxkbmap us,ru)");
    }
  }
}

}  // namespace kivra::x11
