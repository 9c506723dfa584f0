#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <utility>

namespace kivra {

/// The right to be the only instance in the login session, held until the process ends: a lock on a
/// file in the runtime directory and a name on the session bus, as far as there are such. Of
/// instances that start at the same moment exactly one gets it.
class InstanceClaim {
 public:
  /// The name is a well-known bus name ("app.kivra.Kivra").
  explicit InstanceClaim(std::string name) : name_(std::move(name)) {}

  /// Takes the right unless it is held already. Answers the process that holds it: this one also
  /// where there is neither a bus nor a runtime directory, 0 when the bus tells only that there is
  /// one.
  pid_t holder();

  /// The other process that holds the lock, without taking it; nothing when none is seen to.
  std::optional<pid_t> lockHolder() const;

 private:
  pid_t findHolder() const;
  std::optional<pid_t> holderOnBus() const;
  std::optional<pid_t> holderOfLock() const;
  std::string lockPath() const;

  std::string name_;
  std::optional<pid_t> holder_;
};

}  // namespace kivra
