#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/selection/selection_reader.h"
#include "platform/x11/atoms.h"

namespace kivra::x11 {

/// Asks by converting the selection into properties of a window.
class X11SelectionReader : public SelectionReader {
 public:
  /// Handles events until the condition holds; answers whether it did before the moment.
  using HandleEvents = std::function<bool(const std::function<bool()>& condition, Moment until)>;

  /// `window` is ours and reports changes of its properties.
  X11SelectionReader(xcb_connection_t* connection, Atoms& atoms, xcb_window_t window,
                     xcb_atom_t selection, std::chrono::milliseconds idle,
                     HandleEvents handleEvents);

  std::optional<std::vector<std::string>> targets(Moment until) override;
  /// Words are no bytes: they mean something only together with their order and the server's
  /// numbers in them.
  std::optional<Given> read(const std::string& target, Moment until) override;

  void notified(const xcb_selection_notify_event_t& event);
  void propertyChanged(xcb_atom_t property);

 private:
  struct Request {
    xcb_atom_t target = XCB_ATOM_NONE;
    xcb_atom_t property = XCB_ATOM_NONE;
    bool isAnswered = false;
    bool isRefused = false;
    bool hasPiece = false;
  };

  /// No type: the owner refuses.
  struct Converted {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::uint8_t format = 0;
    std::string bytes;
  };

  std::optional<Converted> convert(const std::string& target, Moment until);
  bool waitFor(const bool& sign, Moment until);
  std::optional<Converted> takeProperty();
  std::optional<Converted> takePieces(Moment until);

  xcb_connection_t* connection_;
  Atoms& atoms_;
  xcb_window_t window_;
  xcb_atom_t selection_;
  std::chrono::milliseconds idle_;
  HandleEvents handleEvents_;
  Request request_;
  unsigned requestCount_ = 0;
};

}  // namespace kivra::x11
