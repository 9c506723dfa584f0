#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/views.h"

namespace kivra {

struct WindowSize {
  int width = 0;
  int height = 0;

  bool operator==(const WindowSize&) const = default;
};

/// Levels of windows, with the platform's values.
namespace window_levels {
inline constexpr int normal = 0;
inline constexpr int floating = 3;
}  // namespace window_levels

/// Bits of a window's style mask, with the platform's values.
namespace window_styles {
inline constexpr std::uint32_t borderless = 0;
inline constexpr std::uint32_t titled = 1;
inline constexpr std::uint32_t closable = 2;
}  // namespace window_styles

/// What a window is made with.
struct WindowAttributes {
  std::string name;  ///< tells the program's windows apart
  std::string title = {};
  std::uint32_t styleMask = window_styles::borderless;
  std::optional<WindowSize> contentSize = WindowSize{1, 1};  ///< points; none: as its content needs
  double alphaValue = 1;                                     ///< 0 is invisible, 1 opaque
  bool isOpaque = true;                                      ///< false: the background is clear
  bool ignoresMouseEvents = false;
  std::uint32_t collectionBehavior = 0;  ///< 1: on all desktops, 16: stays where it is
};

/// A window of the program; destroying it removes it from the screen.
class Window {
 public:
  virtual ~Window() = default;

  /// Draws this tree from now on; what is the same as before keeps its place, focus and cursor.
  virtual void setContent(View content) = 0;
  virtual void setContentSize(WindowSize size) = 0;
  virtual void center() = 0;
  virtual void setAlphaValue(double alpha) = 0;  ///< at 0 it is not on the screen
  virtual void setLevel(int level) = 0;
  virtual void makeKeyAndOrderFront() = 0;
  virtual void orderBack() = 0;  ///< behind the others, if it is on the screen

  /// Hides the window, which keeps its content and its place.
  virtual void close() = 0;

  /// Called whenever the window was closed, by the user too.
  virtual void setCloseHandler(std::function<void()> handler) = 0;
};

/// Where windows come from.
class Windows {
 public:
  virtual ~Windows() = default;

  /// A window that is not on the screen yet. Never null: where nothing can be shown it stays
  /// unseen.
  virtual std::unique_ptr<Window> windowCreate(const WindowAttributes& attributes) = 0;
};

}  // namespace kivra
