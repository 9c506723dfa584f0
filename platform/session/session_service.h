#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/io/background_worker.h"

namespace kivra {

/// What became of a command.
struct CommandReply {
  int status = 0;         ///< the exit status of the program that asked
  std::string output;     ///< for standard output
  std::string message{};  ///< for standard error, without the program's name; may be empty

  bool operator==(const CommandReply&) const = default;
};

/// The program as others on the session bus see it: it can be asked to come forward
/// (org.freedesktop.Application), and to carry out commands. Without a session bus nobody asks.
class SessionService {
 public:
  /// All are called on the main thread.
  struct Handlers {
    std::function<void()> activate;
    /// `words` are those of a command line behind the program's name, `input` the file it reads.
    std::function<CommandReply(const std::vector<std::string>& words, const std::string& input)>
        run;
  };

  /// Serves from now on, so it is made before the program takes its name on the bus.
  SessionService(CallOnMainThread callOnMainThread, Handlers handlers);
  ~SessionService();
  SessionService(const SessionService&) = delete;
  SessionService& operator=(const SessionService&) = delete;

 private:
  class Server;

  std::unique_ptr<Server> server_;
};

}  // namespace kivra
