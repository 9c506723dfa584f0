#pragma once

#include <string>
#include <string_view>

namespace kivra::x11 {

/// The bundle identifier for a program known by its desktop-file identifier or window class
/// ("org.gnome.Terminal", "XTerm"): for programs that exist on several systems the one under which
/// the skip list knows them, else the name itself.
std::string bundleIdentifier(std::string_view name);

}  // namespace kivra::x11
