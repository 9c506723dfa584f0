#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/embedded/effects.h"
#include "platform/windows.h"

namespace kivra::embedded {

/// A window as the screen would show it.
struct WindowState {
  WindowAttributes attributes;
  View content;
  int level = window_levels::normal;
  bool isShown = false;
  std::function<void()> closeHandler;
};

/// Keeps the windows of the program instead of showing them.
class EmbeddedWindows : public Windows {
 public:
  /// The window of this name, or null.
  std::shared_ptr<const WindowState> find(std::string_view name) const;

  /// The user closes the window; nothing happens when it is not open.
  void close(std::string_view name);

  /// The window of this name with its tree of controls. One that the program has not made is closed
  /// and empty.
  Json toJson(const std::string& name) const;

  std::unique_ptr<Window> windowCreate(const WindowAttributes& attributes) override;

 private:
  class EmbeddedWindow;

  std::map<std::string, std::weak_ptr<WindowState>, std::less<>> windows_;
};

}  // namespace kivra::embedded
