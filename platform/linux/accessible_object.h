#pragma once

#include <string>

namespace kivra {

/// An object of an application's user interface, by its place on the accessibility bus.
struct AccessibleObject {
  std::string busName;
  std::string path;

  bool operator==(const AccessibleObject&) const = default;
};

}  // namespace kivra
