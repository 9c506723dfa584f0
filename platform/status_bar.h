#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kivra {

/// An item of a menu, or the line that separates two.
struct MenuItem {
  std::string title = {};
  std::function<void()> action = {};  ///< none for an item that only says something
  std::string keyEquivalent = {};     ///< pressed with Command while the menu is open; may be empty
  bool isEnabled = true;
  bool isSeparator = false;

  static MenuItem separator() { return {.isSeparator = true}; }
};

/// The length of a status item that is as wide as the bar is high.
inline constexpr double squareLength = -2;

/// The program's icon in the status bar; destroying it removes it.
class StatusItem {
 public:
  virtual ~StatusItem() = default;

  /// A template image: it is drawn in the bar's own colours. A symbol that the desktop does not
  /// have leaves the button without an image.
  virtual void setButtonImage(const std::string& symbol,
                              const std::string& accessibilityDescription) = 0;
  virtual void setAppearsDisabled(bool disabled) = 0;

  /// Asked for the items whenever the menu is about to open.
  virtual void setMenu(std::function<std::vector<MenuItem>()> menuNeedsUpdate) = 0;
};

/// A tray of the old kind (XEmbed), into which programs put a window for each icon.
struct SystemTray {
  std::optional<std::uint32_t> foreground;  ///< the colour of its icons, 0xRRGGBB, where it tells
};

/// The status bar of the desktop.
class StatusBar {
 public:
  virtual ~StatusBar() = default;

  /// Never null: where there is no bar the item waits for one.
  virtual std::unique_ptr<StatusItem> statusItem(double length) = 0;
};

}  // namespace kivra
