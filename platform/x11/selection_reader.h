#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/x11/atoms.h"

namespace kivra::x11 {

/// Asks the owner of a selection for its data. Every wait is bounded.
class SelectionReader {
 public:
  using Moment = std::chrono::steady_clock::time_point;
  /// Handles events until the condition holds; answers whether it did before the moment.
  using HandleEvents = std::function<bool(const std::function<bool()>& condition, Moment until)>;

  struct Waits {
    /// For an owner's first sign of life.
    std::chrono::milliseconds answer{100};
    /// For each piece of the data of a type, which it may have to make first.
    std::chrono::milliseconds data{500};
    /// For all types together.
    std::chrono::milliseconds whole{1500};
  };

  /// What the owner gives for a target.
  struct Converted {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::uint8_t format = 0;
    std::string bytes;
  };

  /// `window` is ours and reports changes of its properties.
  SelectionReader(xcb_connection_t* connection, Atoms& atoms, xcb_window_t window,
                  xcb_atom_t selection);

  /// The names of the targets; none when the owner does not answer.
  std::vector<std::string> targets(const HandleEvents& handleEvents, Moment until);

  /// The data of a target; nothing when the owner refuses, or stops before the end.
  std::optional<Converted> convert(const std::string& target, const HandleEvents& handleEvents,
                                   std::chrono::milliseconds wait, Moment until);

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

  std::optional<Converted> takeProperty();
  std::optional<Converted> takePieces(const HandleEvents& handleEvents,
                                      std::chrono::milliseconds wait, Moment until);

  xcb_connection_t* connection_;
  Atoms& atoms_;
  xcb_window_t window_;
  xcb_atom_t selection_;
  Request request_;
  unsigned requestCount_ = 0;
};

}  // namespace kivra::x11
