#pragma once

#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace kivra {

/// The installed Apertium and the packages of its language pairs. Blocks; for a background thread.
class Apertium {
 public:
  struct Programs {
    std::string apertium = "apertium";
    std::string aptCache = "apt-cache";
    std::string dpkgQuery = "dpkg-query";
  };

  explicit Apertium(Programs programs) : programs_(std::move(programs)) {}

  /// The installed mode that translates between the languages ("eng-spa"), the one for the region
  /// of the target before others.
  std::optional<std::string> mode(const std::string& source, const std::string& target,
                                  const std::stop_token& stop) const;

  /// The package that translates between the languages, known to the package lists and not
  /// installed.
  std::optional<std::string> missingPackage(const std::string& source, const std::string& target,
                                            const std::stop_token& stop) const;

  /// Nothing when Apertium fails.
  std::optional<std::string> translate(const std::string& text, const std::string& mode,
                                       const std::stop_token& stop) const;

 private:
  bool isInstalled(const std::string& package, const std::stop_token& stop) const;

  Programs programs_;
};

}  // namespace kivra
