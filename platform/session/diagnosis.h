#pragma once

#include <string>
#include <vector>

namespace kivra {

/// What a session gives the program, as it has been found out.
struct SessionFacts {
  /// Who may be the input method of a compositor.
  enum class InputMethod { notNeeded, ours, free, taken };

  std::string display;                   ///< its kind and name: "X11 (:0)"
  std::string server{};                  ///< the compositor or X server; empty when none answers
  std::string problem{};                 ///< why the display does not serve; empty when it does
  bool isGuardRunning = false;           ///< the keyboard's guard
  std::vector<std::string> layouts{};    ///< their identifiers
  std::vector<std::string> languages{};  ///< two-letter codes of theirs
  InputMethod inputMethod = InputMethod::notNeeded;
  bool isAccessibilityOn = false;
  bool hasSecrets = false;  ///< a keychain answers
  bool hasTray = false;
};

/// A line for the user on each of these, with what mends it where something is missing.
std::vector<std::string> diagnosis(const SessionFacts& facts);

/// Whether the session bus has, or can start, a keychain (org.freedesktop.secrets or KWallet).
bool hasSecretsService();

/// The command that switches the desktop's accessibility on.
inline constexpr const char* accessibilityCommand =
    "busctl --user set-property org.a11y.Bus /org/a11y/bus org.a11y.Status IsEnabled b true";

}  // namespace kivra
