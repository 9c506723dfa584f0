#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/pasteboard.h"
#include "platform/x11/atoms.h"
#include "platform/x11/selection_offer.h"
#include "platform/x11/selection_reader.h"
#include "platform/x11/xcb_pointer.h"

namespace kivra::x11 {

/// The CLIPBOARD selection on a connection of its own. Belongs to one thread. Without a server, or
/// once it is gone, the selection is empty and nothing can be written.
class ClipboardSelection {
 public:
  ClipboardSelection(const std::string& display, const SelectionReader::Waits& waits);
  /// Leaves what it owns to the clipboard manager, where there is one.
  ~ClipboardSelection();
  ClipboardSelection(const ClipboardSelection&) = delete;
  ClipboardSelection& operator=(const ClipboardSelection&) = delete;

  /// Readable when there are events to handle; -1 without a connection.
  int fd() const;
  void handleEvents();

  /// All that is there, and the change count from which on it was there.
  struct Contents {
    std::vector<PasteboardItem> items{};
    std::int64_t changeCount = 0;
  };

  std::int64_t changeCount();

  /// Nothing when an owner that lives does not hand over everything.
  std::optional<Contents> contents();
  std::optional<std::string> text(const std::string& type);

  /// Takes the selection and offers these items; no items: nobody owns the selection.
  void own(const std::vector<PasteboardItem>& items);

 private:
  bool isConnected() const;
  void watchOwner();
  void handle(const xcb_generic_event_t& event);
  void handleProperty(const xcb_property_notify_event_t& event);
  bool handleEventsUntil(const std::function<bool()>& condition, SelectionReader::Moment until);
  xcb_timestamp_t serverTime();
  xcb_window_t ownerOf(xcb_atom_t selection);
  bool isOwner() { return ownerOf(clipboard_) == window_; }
  bool awaitAnswer(const std::function<bool()>& isAnswered, SelectionReader::Moment until);
  PasteboardItem ownItem() const;
  std::optional<std::string> textOfOwner(const std::string& type, SelectionReader::Moment until);
  void handOver();

  XcbConnectionPointer connection_;
  Atoms atoms_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  xcb_atom_t clipboard_ = XCB_ATOM_NONE;
  std::optional<SelectionReader> reader_;
  SelectionOffer offer_;
  std::uint8_t ownerChanged_ = 0;  // the event's number; 0 when the server cannot tell
  std::int64_t changeCount_ = 0;
  std::int64_t askedAt_ = 0;  // the change count when the owner was last asked for something
  std::optional<xcb_timestamp_t> stamp_;
  bool isHandedOver_ = false;
};

}  // namespace kivra::x11
