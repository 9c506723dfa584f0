#include "offering_client.h"

#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <utility>

#include "platform/wayland/client/calls.h"
#include "wlr-data-control-unstable-v1-client-protocol.h"

namespace kivra::wayland {

OfferingClient::OfferingClient(Answers answers) : answers_(std::move(answers)) {
  own();
  thread_ = std::thread([this] { serve(); });
}

OfferingClient::~OfferingClient() {
  isEnding_ = true;
  thread_.join();
}

void OfferingClient::own() {
  static constexpr zwlr_data_control_source_v1_listener listener = {
      Calls<&OfferingClient::send>{}, Calls<&OfferingClient::cancelled>{}};
  // All of these last as long as the connection.
  auto* const manager =
      connection_->bind<zwlr_data_control_manager_v1>(zwlr_data_control_manager_v1_interface);
  auto* const device = zwlr_data_control_manager_v1_get_data_device(
      manager, connection_->bind<wl_seat>(wl_seat_interface));
  auto* const source = zwlr_data_control_manager_v1_create_data_source(manager);
  zwlr_data_control_source_v1_add_listener(source, &listener, this);
  for (const auto& [type, answer] : answers_) {
    zwlr_data_control_source_v1_offer(source, type.c_str());
  }
  zwlr_data_control_device_v1_set_selection(device, source);
  connection_->roundtrip();
}

void OfferingClient::serve() {
  sigset_t pipe;
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
  while (!isEnding_ && connection_) {
    pollfd descriptor{.fd = connection_->fd(), .events = POLLIN, .revents = 0};
    ::poll(&descriptor, 1, 10);
    connection_->dispatch();
    if (!dyingPipe_) continue;
    // As the kernel does it for a process that ends.
    connection_.reset();
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
