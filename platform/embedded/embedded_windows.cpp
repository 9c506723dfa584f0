#include "platform/embedded/embedded_windows.h"

#include <utility>

namespace kivra::embedded {

class EmbeddedWindows::EmbeddedWindow : public Window {
 public:
  explicit EmbeddedWindow(std::shared_ptr<WindowState> state) : state_(std::move(state)) {}

  void setContent(View content) override { state_->content = std::move(content); }
  void setContentSize(WindowSize size) override { state_->attributes.contentSize = size; }
  void center() override {}
  void setAlphaValue(double alpha) override { state_->attributes.alphaValue = alpha; }
  void setLevel(int level) override { state_->level = level; }
  void makeKeyAndOrderFront() override { state_->isInFront = true; }
  void orderBack() override { state_->isInFront = false; }

 private:
  std::shared_ptr<WindowState> state_;
};

std::shared_ptr<const WindowState> EmbeddedWindows::find(std::string_view name) const {
  const auto found = windows_.find(name);
  return found == windows_.end() ? nullptr : found->second.lock();
}

std::unique_ptr<Window> EmbeddedWindows::windowCreate(const WindowAttributes& attributes) {
  auto state = std::make_shared<WindowState>();
  state->attributes = attributes;
  windows_.insert_or_assign(attributes.name, state);
  return std::make_unique<EmbeddedWindow>(std::move(state));
}

}  // namespace kivra::embedded
