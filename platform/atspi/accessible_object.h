#pragma once

#include <cstdint>
#include <string>

namespace kivra {

/// ATSPI_ROLE_PASSWORD_TEXT: what is typed here is nobody's business.
inline constexpr std::uint32_t passwordRole = 40;

/// What every object answers to.
inline constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";

/// The name of the registry on the bus, and the path of its root, whose children are the roots of
/// the applications.
inline constexpr const char* accessibleRegistry = "org.a11y.atspi.Registry";
inline constexpr const char* accessibleRoot = "/org/a11y/atspi/accessible/root";

/// An object of an application's user interface, by its place on the accessibility bus.
struct AccessibleObject {
  std::string busName;
  std::string path;

  bool operator==(const AccessibleObject&) const = default;
};

}  // namespace kivra
