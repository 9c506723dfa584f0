#pragma once

#include <memory>
#include <string>

#include "platform/selection/selection_pasteboard.h"
#include "platform/x11/clipboard_selection.h"

namespace kivra::x11 {

/// The CLIPBOARD selection of the X server.
class X11Pasteboard : public SelectionPasteboard {
 public:
  struct Options {
    std::string display{};  ///< empty: that of the environment
    SelectionWaits waits{};
  };

  explicit X11Pasteboard(RunLoop& runLoop) : X11Pasteboard(runLoop, Options{}) {}
  X11Pasteboard(RunLoop& runLoop, const Options& options)
      : SelectionPasteboard(runLoop, [options] {
          return std::make_unique<ClipboardSelection>(options.display, options.waits);
        }) {}
};

}  // namespace kivra::x11
