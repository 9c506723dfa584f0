#include "platform/embedded/embedded_desktop.h"
#include "platform/workspace_contract.h"

namespace kivra {
namespace {

class EmbeddedFront {
 public:
  Workspace& workspace() { return desktop_.session; }
  void bringToFront(const std::optional<std::string>& identifier) {
    embedded::FrontApplication front;
    front.identifier = identifier;
    desktop_.application.focus(front);
  }
  void leave() { bringToFront(std::nullopt); }
  void readPassword(bool isRead) { desktop_.application.front().secure = isRead; }
  std::vector<std::string> opened() { return opened_; }

 private:
  std::vector<std::string> opened_;
  embedded::EmbeddedDesktop desktop_{[this](const embedded::Json& effect) {
                                       if (effect.contains("open"))
                                         opened_.push_back(effect["open"]);
                                     },
                                     nullptr};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, WorkspaceContract, EmbeddedFront);

}  // namespace
}  // namespace kivra
