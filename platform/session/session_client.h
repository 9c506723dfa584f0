#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/session/session_service.h"

namespace kivra {

/// The running program, asked over the session bus. Blocks until it answers.
namespace session_client {

/// The program runs and does not answer, or does not understand.
struct NoAnswer : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Has the program come forward; nothing happens when none runs. At most 2 s.
void activate();

/// Has the program carry out a command; nothing when none runs. Throws NoAnswer.
std::optional<CommandReply> run(const std::vector<std::string>& words, const std::string& input);

}  // namespace session_client

}  // namespace kivra
