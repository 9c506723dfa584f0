#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/selection/selection.h"
#include "platform/wayland/client/connection.h"
#include "platform/wayland/offer_reader.h"
#include "platform/wayland/source_offer.h"

struct zwlr_data_control_device_v1;
struct zwlr_data_control_manager_v1;

namespace kivra::wayland {

/// The clipboard of a compositor with wlr-data-control.
class DataControlSelection : public Selection {
 public:
  /// `display` names the compositor; empty: that of the environment.
  DataControlSelection(const std::string& display, const SelectionWaits& waits);
  ~DataControlSelection() override;

  int fd() const override { return isConnected() ? waitFd_ : -1; }
  void handleEvents() override;
  void own(const std::vector<PasteboardItem>& items) override;

 private:
  bool isConnected() const override { return compositor_ && !compositor_->isGone(); }
  void catchUp() override;
  Owner owner() override;
  const SelectionContents& offered() const override { return offer_.contents(); }
  SelectionReader& reader() override { return reader_; }

  void openDevice();
  void introduce(zwlr_data_control_offer_v1* offer) { reader_.introduce(offer); }
  void select(zwlr_data_control_offer_v1* offer);
  bool waitFor(int fd, SelectionReader::Moment until);

  int waitFd_;  // ready when the connection is, or a pipe takes more
  std::optional<Connection> compositor_;
  Owned<wl_seat> seat_;
  Owned<zwlr_data_control_manager_v1> manager_;
  Owned<zwlr_data_control_device_v1> device_;
  OfferReader reader_;
  SourceOffer offer_{waitFd_};
};

}  // namespace kivra::wayland
