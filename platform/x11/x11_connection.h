#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/guard/display_layouts.h"

namespace kivra::x11 {

/// The program's own connection to the X server, on which it asks about windows and layouts. The
/// keys go through the guard's. Everything asked of a connection that is not there, or is broken,
/// has no answer.
class X11Connection : public guard::DisplayLayouts {
 public:
  X11Connection() = default;
  ~X11Connection() override;
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;

  /// Connects to the server of $DISPLAY unless connected. Afterwards `problem()` says what stands
  /// in the way of the program, in a line for the user; empty when nothing does.
  bool connect();
  const std::string& problem() const { return problem_; }
  /// The same in a few words.
  std::string impediment() const;
  bool isConnected() const override { return connection_ != nullptr && problem_.empty(); }

  /// True once the server has closed a connection that stood.
  bool isLost() const;
  int fd() const { return xcb_get_file_descriptor(connection_); }

  /// Called by `readEvents` when the keyboard map may have changed, and when a watched window's
  /// property has.
  void onMapChange(std::function<void()> called) { mapChanged_ = std::move(called); }
  void onPropertyChange(std::function<void(xcb_atom_t property)> called) {
    propertyChanged_ = std::move(called);
  }

  /// Takes in what the server has sent, without waiting for more.
  void readEvents();

  /// Whether changes of the window's properties are told.
  void watchProperties(xcb_window_t window, bool watch);

  /// The atom of the name, 0 without a server.
  xcb_atom_t atom(std::string_view name);

  /// The server's maker and release; empty without one.
  std::string serverName() const;

  xcb_window_t root() const { return root_; }

  /// A window property's bytes, at most 4 KiB; nothing when the window has no such property.
  std::optional<std::string> property(xcb_window_t window, std::string_view name);

  /// The first window number in a property, 0 for none.
  xcb_window_t windowProperty(xcb_window_t window, std::string_view name);

  /// The window with the keyboard focus, 0 for none.
  xcb_window_t focusWindow();
  xcb_window_t parent(xcb_window_t window);

  /// Whether another client has grabbed the key with exactly these modifiers on the root window.
  bool isKeyGrabbed(xcb_keycode_t key, std::uint16_t modifiers);

  /// Before the first key of a session that is the map of a keyboard, not the server's own.
  xkb_keymap* newKeymap() override;
  std::string rulesNames() override { return property(root_, "_XKB_RULES_NAMES").value_or(""); }
  std::optional<std::uint32_t> group() override;

 private:
  std::string missing();
  std::vector<std::uint16_t> keyboards();

  xcb_connection_t* connection_ = nullptr;
  xcb_window_t root_ = 0;
  std::uint8_t xkbEvent_ = 0;
  std::string problem_ = "not connected";
  std::map<std::string, xcb_atom_t, std::less<>> atoms_;
  std::function<void()> mapChanged_;
  std::function<void(xcb_atom_t)> propertyChanged_;
};

}  // namespace kivra::x11
