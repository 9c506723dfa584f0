#pragma once

#include <string>
#include <string_view>
#include <vector>

struct xkb_keymap;

namespace kivra {

/// One group of the session's keyboard as the xkb registry knows it.
struct SessionLayout {
  std::string id;                      ///< "us", "ru(typewriter)"; empty when nothing is known
  std::vector<std::string> languages;  ///< two-letter codes ("ru"), most important first

  bool operator==(const SessionLayout&) const = default;
};

/// The layouts of the groups of a keyboard map. `rulesNames` is the value of the root window's
/// property _XKB_RULES_NAMES, NUL-separated: rules, model, layouts, variants, options. `groupNames`
/// are the descriptions that stand in the keyboard map; they decide how many groups there are, and,
/// where the property does not fit them, which.
std::vector<SessionLayout> sessionLayouts(std::string_view rulesNames,
                                          const std::vector<std::string>& groupNames);
std::vector<SessionLayout> sessionLayouts(xkb_keymap* keymap, std::string_view rulesNames);

}  // namespace kivra
