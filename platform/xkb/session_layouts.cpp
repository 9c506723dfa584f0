#include "platform/xkb/session_layouts.h"

#include <xkbcommon/xkbcommon.h>
#include <xkbcommon/xkbregistry.h>

#include <memory>

namespace kivra {

namespace {

struct ReleaseContext {
  void operator()(rxkb_context* context) const { rxkb_context_unref(context); }
};
using Registry = std::unique_ptr<rxkb_context, ReleaseContext>;

Registry openRegistry() {
  Registry registry(rxkb_context_new(RXKB_CONTEXT_LOAD_EXOTIC_RULES));
  if (registry && !rxkb_context_parse(registry.get(), "evdev")) registry.reset();
  return registry;
}

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  while (true) {
    const auto end = text.find(separator);
    pieces.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) return pieces;
    text.remove_prefix(end + 1);
  }
}

std::string text(const char* value) { return value == nullptr ? "" : value; }

std::string identifier(rxkb_layout* layout) {
  const auto variant = text(rxkb_layout_get_variant(layout));
  const auto name = text(rxkb_layout_get_name(layout));
  return variant.empty() ? name : name + "(" + variant + ")";
}

/// The brief description of a layout is its language's two-letter code where there is one, in
/// variants as well; the registry's own language lists have three-letter codes only.
std::vector<std::string> languages(rxkb_layout* layout) {
  std::vector<std::string> codes;
  const auto brief = text(rxkb_layout_get_brief(layout));
  if (brief.size() == 2) codes.push_back(brief);
  return codes;
}

/// The first layout of the registry for which `matches` holds.
template <class Matches>
SessionLayout find(rxkb_context* registry, Matches matches) {
  for (auto* layout = registry == nullptr ? nullptr : rxkb_layout_first(registry);
       layout != nullptr; layout = rxkb_layout_next(layout)) {
    if (matches(layout)) return {identifier(layout), languages(layout)};
  }
  return {};
}

/// The identifiers that the property names, one for each group.
std::vector<std::string> namedIdentifiers(std::string_view rulesNames) {
  const auto fields = split(rulesNames, '\0');
  constexpr std::size_t layoutField = 2;
  constexpr std::size_t variantField = 3;
  if (fields.size() <= layoutField || fields[layoutField].empty()) return {};
  auto identifiers = split(fields[layoutField], ',');
  const auto variants =
      fields.size() > variantField ? split(fields[variantField], ',') : std::vector<std::string>{};
  for (std::size_t i = 0; i < identifiers.size() && i < variants.size(); ++i) {
    if (!variants[i].empty()) identifiers[i] += "(" + variants[i] + ")";
  }
  return identifiers;
}

}  // namespace

std::vector<SessionLayout> sessionLayouts(std::string_view rulesNames,
                                          const std::vector<std::string>& groupNames) {
  const auto registry = openRegistry();
  const auto named = namedIdentifiers(rulesNames);
  std::vector<SessionLayout> layouts;
  for (std::size_t i = 0; i < groupNames.size(); ++i) {
    const auto description = find(registry.get(), [&](rxkb_layout* layout) {
      return text(rxkb_layout_get_description(layout)) == groupNames[i];
    });
    const auto byName =
        i >= named.size() ? SessionLayout{} : find(registry.get(), [&](rxkb_layout* layout) {
          return identifier(layout) == named[i];
        });
    // The property is only a note of who set the map last; the map itself has the last word.
    const auto agrees = !byName.id.empty() && (description.id.empty() || description == byName);
    layouts.push_back(agrees ? byName : description);
  }
  return layouts;
}

std::vector<SessionLayout> sessionLayouts(xkb_keymap* keymap, std::string_view rulesNames) {
  std::vector<std::string> groupNames;
  for (xkb_layout_index_t i = 0; i < xkb_keymap_num_layouts(keymap); ++i) {
    groupNames.push_back(text(xkb_keymap_layout_get_name(keymap, i)));
  }
  return sessionLayouts(rulesNames, groupNames);
}

}  // namespace kivra
