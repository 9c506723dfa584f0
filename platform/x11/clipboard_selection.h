#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/selection/selection.h"
#include "platform/x11/atoms.h"
#include "platform/x11/selection_offer.h"
#include "platform/x11/x11_selection_reader.h"
#include "platform/x11/xcb_pointer.h"

namespace kivra::x11 {

/// The CLIPBOARD selection of an X server.
class ClipboardSelection : public Selection {
 public:
  ClipboardSelection(const std::string& display, const SelectionWaits& waits);
  /// Leaves what it owns to the clipboard manager, where there is one.
  ~ClipboardSelection() override;

  int fd() const override;
  void handleEvents() override;
  void own(const std::vector<PasteboardItem>& items) override;

 private:
  bool isConnected() const override;
  void catchUp() override;
  Owner owner() override;
  const SelectionContents& offered() const override { return offer_.contents(); }
  SelectionReader& reader() override { return *reader_; }

  void watchOwner();
  void handle(const xcb_generic_event_t& event);
  void handleProperty(const xcb_property_notify_event_t& event);
  bool handleEventsUntil(const std::function<bool()>& condition, SelectionReader::Moment until);
  xcb_timestamp_t serverTime();
  xcb_window_t ownerOf(xcb_atom_t selection);
  bool awaitAnswer(const std::function<bool()>& isAnswered, SelectionReader::Moment until);
  void handOver();

  XcbConnectionPointer connection_;
  Atoms atoms_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  xcb_atom_t clipboard_ = XCB_ATOM_NONE;
  std::optional<X11SelectionReader> reader_;
  SelectionOffer offer_;
  std::uint8_t ownerChanged_ = 0;  // the event's number; 0 when the server cannot tell
  std::optional<xcb_timestamp_t> stamp_;
  bool isHandedOver_ = false;
};

}  // namespace kivra::x11
