#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "platform/selection/selection_contents.h"
#include "platform/x11/atoms.h"

namespace kivra::x11 {

/// Hands the contents of an owned selection over to whoever asks, large ones in pieces.
class SelectionOffer {
 public:
  SelectionOffer(xcb_connection_t* connection, Atoms& atoms)
      : connection_(connection), atoms_(atoms) {}

  /// Offers these contents from this time on.
  void set(SelectionContents contents, xcb_timestamp_t since);

  /// Somebody else took the selection at this time; what was offered since then stays.
  void lose(xcb_timestamp_t at);

  const SelectionContents& contents() const { return contents_; }

  void answer(const xcb_selection_request_event_t& request);

  /// The property of a requestor was deleted: it wants the next piece.
  void propertyDeleted(xcb_window_t window, xcb_atom_t property);

  bool isHandingOver() const { return !transfers_.empty(); }

 private:
  using Moment = std::chrono::steady_clock::time_point;

  struct Transfer {
    xcb_window_t window;
    xcb_atom_t property;
    xcb_atom_t type;
    std::shared_ptr<const std::string> data;
    std::size_t sent = 0;
    Moment lastStep;
  };

  bool put(xcb_window_t window, xcb_atom_t target, xcb_atom_t property);
  bool putMany(xcb_window_t window, xcb_atom_t property);
  void putTargets(xcb_window_t window, xcb_atom_t property);
  void putData(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
               std::shared_ptr<const std::string> data);
  void putPiece(Transfer& transfer);
  void listenTo(xcb_window_t window, bool listen);
  void forgetAbandoned();

  xcb_connection_t* connection_;
  Atoms& atoms_;
  SelectionContents contents_;
  xcb_timestamp_t since_ = XCB_CURRENT_TIME;
  std::vector<Transfer> transfers_;
};

}  // namespace kivra::x11
