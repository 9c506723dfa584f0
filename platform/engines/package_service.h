#pragma once

#include <optional>
#include <stop_token>
#include <string>

namespace kivra {

/// Installs a package through the system's package service (PackageKit), which asks the user for
/// consent. Blocks for as long as the user and the download take, at most ten minutes. Answers why
/// it failed; nothing when the package is installed.
std::optional<std::string> installPackage(const std::string& name, const std::stop_token& stop);

}  // namespace kivra
