#include "platform/pasteboard_contract.h"
#include "platform/qt/qt_run_loop.h"
#include "platform/wayland/wayland_pasteboard.h"
#include "sway_server.h"

namespace kivra::wayland {
namespace {

class WaylandBackend {
 public:
  Pasteboard& pasteboard() { return pasteboard_; }
  Pasteboard& elsewhere() { return elsewhere_; }

 private:
  e2e::SwayServer sway_;

  std::string display_ =
      sway_.environment().at("XDG_RUNTIME_DIR") + "/" + sway_.environment().at("WAYLAND_DISPLAY");
  qt::QtRunLoop runLoop_;
  WaylandPasteboard pasteboard_{runLoop_, {.display = display_}};
  WaylandPasteboard elsewhere_{runLoop_, {.display = display_}};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Wayland, PasteboardContract, WaylandBackend);

}  // namespace
}  // namespace kivra::wayland
