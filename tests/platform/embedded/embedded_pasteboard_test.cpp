#include "platform/embedded/embedded_desktop.h"
#include "platform/pasteboard_contract.h"

namespace kivra {
namespace {

class EmbeddedBackend {
 public:
  Pasteboard& pasteboard() { return desktop_.pasteboard; }
  Pasteboard& elsewhere() { return desktop_.pasteboard; }

 private:
  embedded::EmbeddedDesktop desktop_{nullptr, nullptr};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, PasteboardContract, EmbeddedBackend);

}  // namespace
}  // namespace kivra
