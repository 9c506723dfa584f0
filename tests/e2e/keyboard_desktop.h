#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "keyboard_devices.h"
#include "kivra_session.h"

namespace kivra::e2e {

/// Xorg with so many keyboards; Caps Lock switches the layout.
inline XSession::Options keyboards(int count, const std::string& deviceLayouts = "") {
  return {.xkbOptions = "grp:caps_toggle",
          .server = {.keyboards = count, .deviceLayouts = deviceLayouts}};
}

/// A session in which Kivra corrects, with a look at its keyboards.
struct KeyboardDesktop : KivraSession {
  explicit KeyboardDesktop(const XSession::Options& options = keyboards(2))
      : KivraSession(options) {}

  /// What stands in the window after the hands have done this in the English layout.
  std::string typed(const std::function<void()>& hands) {
    window.clear();
    typist.tap(keys::enter);  // no word of before
    const auto hasEnded = [this] {
      return window.textWhenQuiet(std::chrono::milliseconds(50)).ends_with('\n');
    };
    waitFor(hasEnded);
    typist.selectGroup(0);
    window.clear();
    hands();
    return window.textWhenQuiet();
  }
  std::string typed(const std::string& text) {
    return typed([&] { typist.type(text); });
  }

  KeyboardDevices devices{session.display()};
};

}  // namespace kivra::e2e
