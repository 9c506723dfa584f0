#pragma once

#include <stdexcept>

namespace kivra {

/// A failure of a platform service. `what()` is its localized description, which may be shown and
/// logged: it holds no text of the user's and no key.
class PlatformError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace kivra
