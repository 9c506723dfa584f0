#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <utility>

namespace kivra {

/// The right to be the only instance in the login session, held until the process ends: a name on
/// the session bus or, where there is no bus, a lock on a file in the runtime directory. Of
/// instances that start at the same moment exactly one gets it.
class InstanceClaim {
 public:
  /// The name is a well-known bus name ("app.kivra.Kivra").
  explicit InstanceClaim(std::string name) : name_(std::move(name)) {}

  /// Takes the right unless it is held already. Answers the process that holds it: this one also
  /// where there is neither a bus nor a runtime directory.
  pid_t holder();

 private:
  std::optional<pid_t> holderOnBus() const;
  std::optional<pid_t> holderOfLock();

  std::string name_;
  std::optional<pid_t> holder_;
};

}  // namespace kivra
