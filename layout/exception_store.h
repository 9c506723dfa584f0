#pragma once

#include <set>
#include <string>
#include <string_view>

#include "settings/user_defaults.h"

namespace kivra {

/// The words and phrases that the user has rolled back; they are never changed automatically again.
/// Loaded once, written after every change.
class ExceptionStore {
 public:
  explicit ExceptionStore(UserDefaults& defaults);

  /// Exact comparison; tokens are stored in lower case.
  bool contains(std::string_view token) const { return tokens_.contains(token); }

  /// Learns the token in lower case; the empty token is ignored.
  void add(std::string_view token);

  /// Forgets the token, given in any case; false when it was not learned.
  bool remove(std::string_view token);

  const std::set<std::string, std::less<>>& tokens() const { return tokens_; }

 private:
  void save();

  UserDefaults& defaults_;
  std::set<std::string, std::less<>> tokens_;
};

}  // namespace kivra
