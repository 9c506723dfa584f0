#pragma once

#include <memory>
#include <string>

#include "platform/selection/selection_pasteboard.h"
#include "platform/wayland/data_control_selection.h"

namespace kivra::wayland {

/// The clipboard of a compositor with wlr-data-control.
class WaylandPasteboard : public SelectionPasteboard {
 public:
  struct Options {
    std::string display{};  ///< empty: that of the environment
    SelectionWaits waits{};
  };

  explicit WaylandPasteboard(RunLoop& runLoop) : WaylandPasteboard(runLoop, Options{}) {}
  WaylandPasteboard(RunLoop& runLoop, const Options& options)
      : SelectionPasteboard(runLoop, [options] {
          return std::make_unique<DataControlSelection>(options.display, options.waits);
        }) {}
};

}  // namespace kivra::wayland
