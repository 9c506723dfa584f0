#include "offering_client.h"

#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <utility>

#include "platform/wayland/client/calls.h"
#include "platform/wayland/client/connection.h"
#include "wlr-data-control-unstable-v1-client-protocol.h"

namespace kivra::wayland {

/// Its end of the connection, which dies with it.
struct OfferingClient::Client {
  explicit Client(OfferingClient& owner) {
    static constexpr zwlr_data_control_device_v1_listener deviceListener = {
        .data_offer = Ignores{},
        .selection =
            [](void*, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* offer) {
              if (offer != nullptr) zwlr_data_control_offer_v1_destroy(offer);
            },
        .finished = Ignores{},
        .primary_selection = Ignores{}};
    static constexpr zwlr_data_control_source_v1_listener sourceListener = {
        Calls<&OfferingClient::send>{}, Calls<&OfferingClient::cancelled>{}};
    zwlr_data_control_device_v1_add_listener(device.get(), &deviceListener, this);
    zwlr_data_control_source_v1_add_listener(source.get(), &sourceListener, &owner);
    for (const auto& [type, answer] : owner.answers_) {
      zwlr_data_control_source_v1_offer(source.get(), type.c_str());
    }
    zwlr_data_control_device_v1_set_selection(device.get(), source.get());
    connection.roundtrip();
  }

  Connection connection;
  Owned<wl_seat> seat{connection.bind<wl_seat>(wl_seat_interface), wl_seat_destroy};
  Owned<zwlr_data_control_manager_v1> manager{
      connection.bind<zwlr_data_control_manager_v1>(zwlr_data_control_manager_v1_interface),
      zwlr_data_control_manager_v1_destroy};
  Owned<zwlr_data_control_device_v1> device{
      zwlr_data_control_manager_v1_get_data_device(manager.get(), seat.get()),
      zwlr_data_control_device_v1_destroy};
  Owned<zwlr_data_control_source_v1> source{
      zwlr_data_control_manager_v1_create_data_source(manager.get()),
      zwlr_data_control_source_v1_destroy};
};

OfferingClient::OfferingClient(Answers answers)
    : answers_(std::move(answers)),
      client_(std::make_unique<Client>(*this)),
      thread_([this] { serve(); }) {}

OfferingClient::~OfferingClient() {
  isEnding_ = true;
  thread_.join();
}

void OfferingClient::serve() {
  sigset_t pipe;
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
  while (!isEnding_ && client_) {
    pollfd descriptor{.fd = client_->connection.fd(), .events = POLLIN, .revents = 0};
    ::poll(&descriptor, 1, 10);
    client_->connection.dispatch();
    if (!dyingPipe_) continue;
    // As the kernel does it for a process that ends.
    client_.reset();
    ::close(*dyingPipe_);
  }
}

void OfferingClient::send(const char* type, std::int32_t fd) {
  const auto& [bytes, way, delay] = answers_.at(type);
  std::this_thread::sleep_for(delay);
  switch (way) {
    case Way::whole:
      write(fd, bytes);
      break;
    case Way::silent:
      return;  // and keeps the pipe
    case Way::withoutEnd:
      while (!isEnding_ && write(fd, bytes)) {
      }
      break;
    case Way::diesHalfWay:
      write(fd, bytes.substr(0, bytes.size() / 2));
      dyingPipe_ = fd;
      return;
  }
  ::close(fd);
}

/// False when nobody reads any more.
bool OfferingClient::write(int fd, const std::string& bytes) {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    const auto count = ::write(fd, bytes.data() + sent, bytes.size() - sent);
    if (count <= 0) return false;
    sent += static_cast<std::size_t>(count);
  }
  return true;
}

}  // namespace kivra::wayland
