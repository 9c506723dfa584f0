#pragma once

#include <functional>
#include <utility>

#include "platform/guard/display_layouts.h"
#include "platform/wayland/client/compiled_map.h"
#include "platform/wayland/client/keymap_watch.h"

namespace kivra::wayland {

/// The layouts of the compositor's keyboard map.
class SeatKeymap : public guard::DisplayLayouts {
 public:
  /// `changed` is called when there is another map. Throws std::runtime_error without a seat.
  SeatKeymap(Connection& connection, std::function<void()> changed)
      : watch_(connection, std::move(changed)) {}

  bool isConnected() const override { return !watch_.text().empty(); }
  xkb_keymap* newKeymap() override {
    const auto map = compiledMap(watch_.text());
    return map ? xkb_keymap_ref(map.get()) : nullptr;
  }

  wl_seat* seat() const { return watch_.seat(); }

 private:
  KeymapWatch watch_;
};

}  // namespace kivra::wayland
