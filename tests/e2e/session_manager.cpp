#include "session_manager.h"

#include <X11/ICE/ICEutil.h>
#include <poll.h>

#include <array>
#include <cstdlib>
#include <span>
#include <stdexcept>
#include <utility>

namespace kivra::e2e {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto patience = 10s;

Bool letIn(char* /*host*/) { return True; }

template <class Callback>
void set(Callback& entry, decltype(entry.callback) function, SmPointer manager) {
  entry.callback = function;
  entry.manager_data = manager;
}

void ignoreProperties(SmsCallbacks* callbacks, SmPointer manager) {
  set(
      callbacks->set_properties,
      [](SmsConn, SmPointer, int count, SmProp** properties) {
        for (auto* const property : std::span(properties, static_cast<std::size_t>(count))) {
          SmFreeProperty(property);
        }
        std::free(properties);
      },
      manager);
  set(
      callbacks->delete_properties,
      [](SmsConn, SmPointer, int count, char** names) {
        for (int i = 0; i < count; ++i) std::free(names[i]);
        std::free(names);
      },
      manager);
  set(
      callbacks->get_properties,
      [](SmsConn asking, SmPointer) { SmsReturnProperties(asking, 0, nullptr); }, manager);
}

}  // namespace

SessionManager::SessionManager() {
  std::array<char, 256> problem{};
  const auto size = static_cast<int>(problem.size());
  if (SmsInitialize("test", "1", acceptProgram, this, letIn, size, problem.data()) == 0 ||
      IceListenForConnections(&listenerCount_, &listeners_, size, problem.data()) == 0) {
    throw std::runtime_error(std::string("no session manager: ") + problem.data());
  }
  for (auto* const listener : std::span(listeners_, static_cast<std::size_t>(listenerCount_))) {
    IceSetHostBasedAuthProc(listener, letIn);
  }
  auto* const addresses = IceComposeNetworkIdList(listenerCount_, listeners_);
  address_ = addresses;
  std::free(addresses);
}

SessionManager::~SessionManager() {
  for (auto* const connection : connections_) close(connection);
  IceFreeListenObjs(listenerCount_, listeners_);
}

Status SessionManager::acceptProgram(SmsConn program, SmPointer manager, unsigned long* mask,
                                     SmsCallbacks* callbacks, char** /*failure*/) {
  static const auto self = [](SmPointer pointer) -> SessionManager& {
    return *static_cast<SessionManager*>(pointer);
  };
  self(manager).program_ = program;
  *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
          SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
          SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
          SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
  set(
      callbacks->register_client,
      [](SmsConn joining, SmPointer pointer, char* previous) -> Status {
        std::free(previous);
        auto* const name = SmsGenerateClientID(joining);
        SmsRegisterClientReply(joining, name);
        std::free(name);
        self(pointer).hasJoined_ = true;
        return 1;
      },
      manager);
  set(
      callbacks->interact_request,
      [](SmsConn asking, SmPointer pointer, int /*dialog*/) {
        self(pointer).wasHeldUp_ = true;
        SmsInteract(asking);
      },
      manager);
  set(
      callbacks->interact_done, [](SmsConn, SmPointer, Bool) {}, manager);
  set(
      callbacks->save_yourself_request, [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {},
      manager);
  set(
      callbacks->save_yourself_phase2_request,
      [](SmsConn saving, SmPointer) { SmsSaveYourselfPhase2(saving); }, manager);
  set(
      callbacks->save_yourself_done,
      [](SmsConn, SmPointer pointer, Bool success) { self(pointer).hasSaved_ = success != 0; },
      manager);
  set(
      callbacks->close_connection,
      [](SmsConn, SmPointer pointer, int count, char** reasons) {
        SmFreeReasons(count, reasons);
        self(pointer).hasLeft_ = true;
      },
      manager);
  ignoreProperties(callbacks, manager);
  return 1;
}

bool SessionManager::waitForProgram() { return serveUntil(hasJoined_); }

bool SessionManager::logOut() {
  if (!hasJoined_) return false;
  SmsSaveYourself(program_, SmSaveBoth, True, SmInteractStyleAny, False);
  if (!serveUntil(hasSaved_)) return false;
  SmsDie(program_);
  return serveUntil(hasLeft_);
}

bool SessionManager::serveUntil(const bool& done) {
  const auto deadline = Clock::now() + patience;
  while (!done && Clock::now() < deadline) serve(100ms);
  return done;
}

void SessionManager::serve(std::chrono::milliseconds timeout) {
  std::vector<pollfd> watched;
  const std::span listeners(listeners_, static_cast<std::size_t>(listenerCount_));
  for (auto* const listener : listeners) {
    watched.push_back({IceGetListenConnectionNumber(listener), POLLIN, 0});
  }
  for (auto* const connection : connections_) {
    watched.push_back({IceConnectionNumber(connection), POLLIN, 0});
  }
  if (::poll(watched.data(), watched.size(), static_cast<int>(timeout.count())) <= 0) return;
  const auto isReadable = [&](std::size_t index) { return watched[index].revents != 0; };
  std::vector<IceConn> open;
  for (std::size_t i = 0; i < connections_.size(); ++i) {
    if (isReadable(listeners.size() + i) &&
        IceProcessMessages(connections_[i], nullptr, nullptr) != IceProcessMessagesSuccess) {
      close(connections_[i]);
      hasLeft_ = true;
    } else {
      open.push_back(connections_[i]);
    }
  }
  connections_ = std::move(open);
  for (std::size_t i = 0; i < listeners.size(); ++i) {
    if (isReadable(i)) accept(listeners[i]);
  }
}

void SessionManager::close(IceConn connection) {
  if (program_ != nullptr && SmsGetIceConnection(program_) == connection) {
    SmsCleanUp(std::exchange(program_, nullptr));
  }
  IceSetShutdownNegotiation(connection, False);
  IceCloseConnection(connection);
}

void SessionManager::accept(IceListenObj listener) {
  IceAcceptStatus status{};
  if (auto* const connection = IceAcceptConnection(listener, &status); connection != nullptr) {
    connections_.push_back(connection);
  }
}

}  // namespace kivra::e2e
