#pragma once

#include <X11/SM/SMlib.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace kivra::e2e {

/// Stands in for the session manager of a desktop (XSMP), for one program that takes part in the
/// session. Does its work while it is waited for.
class SessionManager {
 public:
  /// Throws std::runtime_error when no program could reach it.
  SessionManager();
  ~SessionManager();
  SessionManager(const SessionManager&) = delete;
  SessionManager& operator=(const SessionManager&) = delete;

  /// What programs find in SESSION_MANAGER.
  const std::string& address() const { return address_; }

  /// Waits for a program to join the session; answers whether one did.
  bool waitForProgram();

  /// Logs out: lets the program save, tells it to end and waits until it has left. Answers whether
  /// it said that it had saved, and left.
  bool logOut();

  /// Whether the program wanted to ask the user something before the session ends.
  bool wasHeldUp() const { return wasHeldUp_; }

 private:
  static Status acceptProgram(SmsConn program, SmPointer manager, unsigned long* mask,
                              SmsCallbacks* callbacks, char** failure);
  bool serveUntil(const bool& done);
  void serve(std::chrono::milliseconds timeout);
  void accept(IceListenObj listener);
  void close(IceConn connection);

  int listenerCount_ = 0;
  IceListenObj* listeners_ = nullptr;
  std::string address_;
  std::vector<IceConn> connections_;
  SmsConn program_ = nullptr;
  bool hasJoined_ = false;
  bool hasSaved_ = false;
  bool hasLeft_ = false;
  bool wasHeldUp_ = false;
};

}  // namespace kivra::e2e
