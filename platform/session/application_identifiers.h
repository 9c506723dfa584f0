#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kivra {

/// The bundle identifier for a program known by its desktop-file identifier or window class
/// ("org.gnome.Terminal", "XTerm"): for programs that exist on several systems the one under which
/// the skip list knows them, else the name itself.
std::string bundleIdentifier(std::string_view name);

/// The programs of this desktop that are known by an identifier, in lower case, with a final "*"
/// for all that begin so. An entry of the skip list that ends with "." stands for all identifiers
/// that begin with it.
std::vector<std::string> programNames(std::string_view entry);

}  // namespace kivra
