#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/windows.h"

namespace kivra::embedded {

/// A window as the screen would show it.
struct WindowState {
  WindowAttributes attributes;
  View content;
  int level = window_levels::normal;
  bool isInFront = false;
};

/// Keeps the windows of the program instead of showing them.
class EmbeddedWindows : public Windows {
 public:
  /// The window of this name, or null.
  std::shared_ptr<const WindowState> find(std::string_view name) const;

  std::unique_ptr<Window> windowCreate(const WindowAttributes& attributes) override;

 private:
  class EmbeddedWindow;

  std::map<std::string, std::weak_ptr<const WindowState>, std::less<>> windows_;
};

}  // namespace kivra::embedded
