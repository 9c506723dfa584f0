#include "platform/wayland/source_offer.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "wlr-data-control-unstable-v1-client-protocol.h"

namespace kivra::wayland {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto abandonedAfter = std::chrono::seconds(10);

}  // namespace

void SourceOffer::DestroySource::operator()(zwlr_data_control_source_v1* source) const {
  zwlr_data_control_source_v1_destroy(source);
}

SourceOffer::~SourceOffer() {
  for (const auto& transfer : transfers_) end(transfer);
}

SourceOffer::Source SourceOffer::set(Source source, SelectionContents contents) {
  static constexpr zwlr_data_control_source_v1_listener listener = {
      .send = [](void* self, zwlr_data_control_source_v1* /*source*/, const char* type,
                 std::int32_t fd) { static_cast<SourceOffer*>(self)->handOver(type, fd); },
      .cancelled =
          [](void* self, zwlr_data_control_source_v1* /*source*/) {
            static_cast<SourceOffer*>(self)->set(nullptr, {});
          }};
  source.swap(source_);
  contents_ = std::move(contents);
  if (source_) {
    zwlr_data_control_source_v1_add_listener(source_.get(), &listener, this);
    for (const auto& [type, data] : contents_) {
      zwlr_data_control_source_v1_offer(source_.get(), type.c_str());
    }
  }
  return source;
}

void SourceOffer::handOver(const std::string& type, int fd) {
  ::fcntl(fd, F_SETFL, O_NONBLOCK);
  Transfer transfer{.fd = fd, .data = nullptr};
  const auto found = contents_.find(type);
  if (found != contents_.end()) transfer.data = found->second;
  if (write(transfer)) transfers_.push_back(std::move(transfer));
}

/// Answers whether there is more to write, later.
bool SourceOffer::write(Transfer& transfer) const {
  while (transfer.data != nullptr && transfer.sent < transfer.data->size()) {
    const auto count = ::write(transfer.fd, transfer.data->data() + transfer.sent,
                               transfer.data->size() - transfer.sent);
    if (count > 0) {
      transfer.sent += static_cast<std::size_t>(count);
      transfer.lastStep = Clock::now();
    } else if (errno == EAGAIN && Clock::now() - transfer.lastStep < abandonedAfter) {
      epoll_event wanted{.events = EPOLLOUT, .data = {.fd = transfer.fd}};
      if (!std::exchange(transfer.isWaiting, true)) {
        ::epoll_ctl(waitFd_, EPOLL_CTL_ADD, transfer.fd, &wanted);
      }
      return true;
    } else {
      break;
    }
  }
  end(transfer);
  return false;
}

void SourceOffer::end(const Transfer& transfer) const {
  // The descriptor may live on in other processes, and the wait for it with it.
  if (transfer.isWaiting) ::epoll_ctl(waitFd_, EPOLL_CTL_DEL, transfer.fd, nullptr);
  ::close(transfer.fd);
}

void SourceOffer::writeOn() {
  std::erase_if(transfers_, [this](Transfer& transfer) { return !write(transfer); });
}

}  // namespace kivra::wayland
