#include "platform/wayland/offer_reader.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "wlr-data-control-unstable-v1-client-protocol.h"

namespace kivra::wayland {

namespace {

constexpr std::size_t pieceSize = 64U << 10U;  // what a pipe holds

}  // namespace

void OfferReader::DestroyOffer::operator()(zwlr_data_control_offer_v1* offer) const {
  zwlr_data_control_offer_v1_destroy(offer);
}

void OfferReader::introduce(zwlr_data_control_offer_v1* offer) {
  static constexpr zwlr_data_control_offer_v1_listener listener = {
      .offer = [](void* types, zwlr_data_control_offer_v1* /*offer*/, const char* type) {
        static_cast<OfferReader*>(types)->introduced_.types.emplace_back(type);
      }};
  introduced_.offer.reset(offer);
  introduced_.types.clear();
  zwlr_data_control_offer_v1_add_listener(offer, &listener, this);
}

void OfferReader::select(zwlr_data_control_offer_v1* offer) {
  selected_ = offer == introduced_.offer.get() ? std::exchange(introduced_, {}) : Offer{};
}

void OfferReader::forget() {
  introduced_ = {};
  selected_ = {};
}

std::optional<std::vector<std::string>> OfferReader::targets(Moment /*until*/) {
  return selected_.types;
}

std::optional<SelectionReader::Given> OfferReader::read(const std::string& target, Moment until) {
  if (std::ranges::find(selected_.types, target) == selected_.types.end()) return Given{};
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
  // Only this end: the owner may count on one that waits.
  ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
  zwlr_data_control_offer_v1_receive(selected_.offer.get(), target.c_str(), ends[1]);
  ::close(ends[1]);
  auto bytes = readAll(ends[0], until);
  ::close(ends[0]);
  // The pipe of an owner that dies ends like that of one that has finished.
  if (!bytes || !environment_.isOwnerThere()) return std::nullopt;
  return Given{std::move(bytes)};
}

std::optional<std::string> OfferReader::readAll(int fd, Moment until) const {
  std::string bytes;
  std::string piece(pieceSize, '\0');
  while (bytes.size() <= mostBytes) {
    const auto count = ::read(fd, piece.data(), piece.size());
    if (count == 0) return bytes;
    if (count > 0) {
      bytes.append(piece, 0, static_cast<std::size_t>(count));
      if (std::chrono::steady_clock::now() >= until) return std::nullopt;
      continue;
    }
    const auto patience = std::min(until, std::chrono::steady_clock::now() + environment_.idle);
    if (errno != EAGAIN || !environment_.waitFor(fd, patience)) return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace kivra::wayland
