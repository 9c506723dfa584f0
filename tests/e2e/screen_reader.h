#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "bus_client.h"

namespace kivra::e2e {

/// Sees and uses the windows of one program through the accessibility bus, as a screen reader does.
class ScreenReader {
 public:
  struct Control {
    BusObject object;
    std::string role;  ///< "push button"
    std::string name;
    std::string description{};
    bool isShowing = false;
    bool isFocusable = false;
    bool isFocused = false;
  };

  /// `sessionBus` is the address of the session bus, `application` the name of the program.
  ScreenReader(const std::string& sessionBus, std::string application);

  /// All controls of the program's windows, those in a window after it.
  std::vector<Control> controls() const;

  /// Waits for a control of this role and name to show; throws std::runtime_error when none does.
  Control waitFor(const std::string& role, const std::string& name) const;

  /// Waits until the control has the focus: its window may have it a moment before, and then takes
  /// no keys. Answers whether it got it.
  bool getsFocus(const Control& control) const;

  /// Does what a click on the control does.
  void press(const Control& control) const;
  /// Waits until the control has the focus; answers whether it got it.
  bool focus(const Control& control) const;
  /// Puts the caret before the character of this number, as a click there does.
  void setCaret(const Control& control, int offset) const;
  std::string text(const Control& control) const;
  void setText(const Control& control, const std::string& text) const;

 private:
  void collect(const BusObject& object, std::vector<Control>& controls) const;
  std::vector<BusObject> children(const BusObject& object) const;
  Control read(const BusObject& object) const;
  std::string description() const;

  std::string application_;
  BusClient bus_;
};

}  // namespace kivra::e2e
