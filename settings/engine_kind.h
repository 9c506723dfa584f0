#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace kivra {

/// The engine that translates, in the order of the list offered to the user.
enum class EngineKind { appleTranslate, foundationModel, deepL };

inline constexpr std::array<EngineKind, 3> allEngineKinds = {
    EngineKind::appleTranslate, EngineKind::foundationModel, EngineKind::deepL};

/// The case name, by which the engine is stored.
constexpr std::string_view rawValue(EngineKind kind) {
  constexpr std::array<std::string_view, 3> names = {"appleTranslate", "foundationModel", "deepL"};
  return names[static_cast<std::size_t>(kind)];
}

/// The engine with exactly this name.
constexpr std::optional<EngineKind> engineKind(std::string_view name) {
  for (const auto kind : allEngineKinds) {
    if (rawValue(kind) == name) return kind;
  }
  return std::nullopt;
}

}  // namespace kivra
