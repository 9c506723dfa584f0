#include "platform/wayland/data_control_selection.h"

#include <poll.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <utility>

#include "platform/wayland/client/calls.h"
#include "wlr-data-control-unstable-v1-client-protocol.h"

namespace kivra::wayland {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto compositorWait = std::chrono::seconds(1);

}  // namespace

DataControlSelection::DataControlSelection(const std::string& display, const SelectionWaits& waits)
    : Selection(waits),
      waitFd_(::epoll_create1(EPOLL_CLOEXEC)),
      seat_(nullptr, wl_seat_destroy),
      manager_(nullptr, zwlr_data_control_manager_v1_destroy),
      device_(nullptr, zwlr_data_control_device_v1_destroy),
      reader_({.idle = waits.idle,
               .waitFor = [this](int fd, auto until) { return waitFor(fd, until); },
               .isOwnerThere =
                   [this] {
                     catchUp();
                     return !isAskedInVain();
                   }}) {
  try {
    compositor_.emplace(display);
    openDevice();
  } catch (const std::runtime_error&) {
    seat_.reset();
    compositor_.reset();  // it is not there, or cannot do it
    return;
  }
  epoll_event readable{.events = EPOLLIN, .data = {.fd = compositor_->fd()}};
  ::epoll_ctl(waitFd_, EPOLL_CTL_ADD, compositor_->fd(), &readable);
}

DataControlSelection::~DataControlSelection() { ::close(waitFd_); }

void DataControlSelection::openDevice() {
  // The primary selection is told of from the second version on, which is not asked for.
  static constexpr zwlr_data_control_device_v1_listener listener = {
      .data_offer = Calls<&DataControlSelection::introduce>{},
      .selection = Calls<&DataControlSelection::select>{},
      .finished = Ignores{},
      .primary_selection = Ignores{}};
  seat_.reset(compositor_->bind<wl_seat>(wl_seat_interface));
  manager_.reset(
      compositor_->bind<zwlr_data_control_manager_v1>(zwlr_data_control_manager_v1_interface));
  device_.reset(zwlr_data_control_manager_v1_get_data_device(manager_.get(), seat_.get()));
  zwlr_data_control_device_v1_add_listener(device_.get(), &listener, this);
}

void DataControlSelection::select(zwlr_data_control_offer_v1* offer) {
  reader_.select(offer);
  noteNewOwner();
}

void DataControlSelection::handleEvents() {
  if (!isConnected()) return;
  compositor_->dispatch();
  compositor_->flush();
  offer_.writeOn();
}

void DataControlSelection::catchUp() {
  if (!isConnected()) return;
  compositor_->roundtrip(compositorWait);
  offer_.writeOn();
}

Selection::Owner DataControlSelection::owner() {
  if (offer_.isOwner()) return Owner::us;
  return reader_.hasOffer() ? Owner::another : Owner::nobody;
}

void DataControlSelection::own(const std::vector<PasteboardItem>& items) {
  if (!isConnected()) return;
  auto contents = contentsOf(items);
  SourceOffer::Source source(
      contents.empty() ? nullptr : zwlr_data_control_manager_v1_create_data_source(manager_.get()));
  auto* const chosen = source.get();
  // The former one is destroyed behind the choice of its successor: nobody sees the moment between.
  auto former = offer_.set(std::move(source), std::move(contents));
  zwlr_data_control_device_v1_set_selection(device_.get(), chosen);
  former.reset();
  catchUp();
}

bool DataControlSelection::waitFor(int fd, SelectionReader::Moment until) {
  for (;;) {
    handleEvents();
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now());
    if (left.count() <= 0 || isAskedInVain() || !isConnected()) return false;
    std::array<pollfd, 2> descriptors{{{.fd = fd, .events = POLLIN, .revents = 0},
                                       {.fd = waitFd_, .events = POLLIN, .revents = 0}}};
    ::poll(descriptors.data(), descriptors.size(), static_cast<int>(left.count()));
    if (descriptors[0].revents != 0) return true;
  }
}

}  // namespace kivra::wayland
