#include "platform/pasteboard_contract.h"
#include "platform/qt/qt_run_loop.h"
#include "platform/x11/x11_pasteboard.h"
#include "x_session.h"

namespace kivra::x11 {
namespace {

class X11Backend {
 public:
  Pasteboard& pasteboard() { return pasteboard_; }
  Pasteboard& elsewhere() { return elsewhere_; }

 private:
  e2e::XSession session_{{.windowManager = false, .accessibility = false}};
  qt::QtRunLoop runLoop_;
  X11Pasteboard pasteboard_{runLoop_, {.display = session_.display()}};
  X11Pasteboard elsewhere_{runLoop_, {.display = session_.display()}};
};
INSTANTIATE_TYPED_TEST_SUITE_P(X11, PasteboardContract, X11Backend);

}  // namespace
}  // namespace kivra::x11
