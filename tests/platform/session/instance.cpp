// An instance of a program that may run once: writes the process that holds the right to be it, and
// stays while that is this one.

#include <unistd.h>

#include <iostream>

#include "platform/session/instance_claim.h"

int main() {
  kivra::InstanceClaim claim("app.kivra.Test");
  const auto holder = claim.holder();
  std::cout << holder << std::endl;
  if (holder == ::getpid()) ::pause();
}
