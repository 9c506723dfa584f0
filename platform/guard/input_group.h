#pragma once

#include <cstdint>
#include <optional>

namespace kivra::guard {

/// The XKB group that the event being handled met, changed by what the program selects meanwhile;
/// nothing between events.
struct InputGroup {
  std::optional<std::uint32_t> ofEvent;
};

}  // namespace kivra::guard
