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
    /// For an owner's next sign of life: it may be busy, or have to make the data first.
    std::chrono::milliseconds idle{3000};
    /// For all further encodings of a picture, once one has been read.
    std::chrono::milliseconds alternatives{1500};
    /// For everything together.
    std::chrono::milliseconds whole{8000};
  };

  /// What the owner gives for a target; no type: it refuses.
  struct Converted {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::uint8_t format = 0;
    std::string bytes;
  };

  /// `window` is ours and reports changes of its properties.
  SelectionReader(xcb_connection_t* connection, Atoms& atoms, xcb_window_t window,
                  xcb_atom_t selection, const Waits& waits, HandleEvents handleEvents);

  const Waits& waits() const { return waits_; }

  /// The names of the targets; nothing when the owner does not answer.
  std::optional<std::vector<std::string>> targets(Moment until);

  /// The data of a target; nothing when the owner stops before the end, or gives more than 256 MiB.
  std::optional<Converted> convert(const std::string& target, Moment until);

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

  bool waitFor(const bool& sign, Moment until);
  std::optional<Converted> takeProperty();
  std::optional<Converted> takePieces(Moment until);

  xcb_connection_t* connection_;
  Atoms& atoms_;
  xcb_window_t window_;
  xcb_atom_t selection_;
  Waits waits_;
  HandleEvents handleEvents_;
  Request request_;
  unsigned requestCount_ = 0;
};

}  // namespace kivra::x11
