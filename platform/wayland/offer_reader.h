#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/selection/selection_reader.h"

struct zwlr_data_control_offer_v1;

namespace kivra::wayland {

/// What the owner of a selection offers, and the reading of it through pipes.
class OfferReader : public SelectionReader {
 public:
  struct Environment {
    std::chrono::milliseconds idle;  ///< for an owner's next sign of life
    /// Waits until the descriptor can be read, handling events meanwhile; false when the moment has
    /// come first, or the owner is gone.
    std::function<bool(int fd, Moment until)> waitFor;
    /// The owner that was asked is the owner now.
    std::function<bool()> isOwnerThere;
  };

  explicit OfferReader(Environment environment) : environment_(std::move(environment)) {}

  /// An offer has been made, of which it is not known yet what for.
  void introduce(zwlr_data_control_offer_v1* offer);
  /// The offer introduced last is that of the selection; null: there is none.
  void select(zwlr_data_control_offer_v1* offer);
  void forget();

  bool hasOffer() const { return selected_.offer != nullptr; }

  std::optional<std::vector<std::string>> targets(Moment until) override;
  std::optional<Given> read(const std::string& target, Moment until) override;

 private:
  struct DestroyOffer {
    void operator()(zwlr_data_control_offer_v1* offer) const;
  };
  struct Offer {
    std::unique_ptr<zwlr_data_control_offer_v1, DestroyOffer> offer;
    std::vector<std::string> types;
  };

  std::optional<std::string> readAll(int fd, Moment until) const;

  Environment environment_;
  Offer introduced_;
  Offer selected_;
};

}  // namespace kivra::wayland
