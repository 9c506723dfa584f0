#pragma once

#include <filesystem>
#include <optional>

namespace kivra {

/// Renames a damaged database file, with the files that SQLite keeps beside it, to
/// "<name>.damaged-<UTC time>", overwriting nothing. The new path, or nothing when that failed.
std::optional<std::filesystem::path> setAside(const std::filesystem::path& path);

}  // namespace kivra
