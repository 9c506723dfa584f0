#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "child_process.h"
#include "keyboard.h"

namespace kivra::e2e {

/// An X server of a test's own, with keyboards to type on.
class XServer {
 public:
  enum class Kind {
    xorg,  ///< the server of people's machines, without a screen, each keyboard a device
    xvnc,  ///< TigerVNC's, with one keyboard
    xvfb,  ///< knows no keyboard but XTEST's
  };

  struct Options {
    Kind kind = Kind::xorg;
    int keyboards = 1;  ///< of Xorg
    /// Layouts in the configuration of each keyboard (Xorg), as systems without a desktop
    /// environment have them. Empty: the server's own.
    std::string deviceLayouts{};
    std::string deviceOptions{};
    std::vector<std::string> arguments{};
  };

  /// The server's files go to `folder`. Throws std::runtime_error when it does not start.
  XServer(const Options& options, std::filesystem::path folder);

  const std::string& display() const { return display_; }

  /// A keyboard of the server's; `isReopened` after it was switched off and on again.
  Keyboard& keyboard(int number = 0, bool isReopened = false);
  void kill() { process_->signal(9); }

 private:
  void writeConfiguration() const;
  std::vector<std::string> command() const;
  std::filesystem::path socket(int keyboard) const;
  std::unique_ptr<Keyboard> openKeyboard(int number) const;

  Options options_;
  std::filesystem::path folder_;
  std::unique_ptr<ChildProcess> process_;
  std::string display_;
  std::map<int, std::unique_ptr<Keyboard>> keyboards_;
};

}  // namespace kivra::e2e
