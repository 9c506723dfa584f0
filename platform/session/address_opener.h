#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kivra {

/// Opens addresses, and the pages of this desktop's settings on which permissions are changed.
class AddressOpener {
 public:
  /// Behind it goes the name of a page.
  static constexpr std::string_view settingsAddress = "settings:";

  struct Environment {
    std::string currentDesktop;      ///< XDG_CURRENT_DESKTOP: names parted by colons
    std::filesystem::path helpPage;  ///< tells what to do where the settings have no such page
    std::function<bool(const std::string&)> isInstalled;  ///< a program of this name
  };

  explicit AddressOpener(Environment environment) : environment_(std::move(environment)) {}

  /// For this session; finds the help page beside the running program or where it was installed.
  static AddressOpener ofSession();

  /// The command that opens the address; empty for an address that is not opened: only http, https,
  /// file and pages of the settings are.
  std::vector<std::string> command(std::string_view address) const;

  /// Runs the command and does not wait for it; nothing happens where it cannot be started.
  void open(std::string_view address) const;

 private:
  Environment environment_;
};

}  // namespace kivra
