#include "platform/embedded/embedded_windows.h"

#include <utility>

#include "platform/embedded/view_json.h"
#include "platform/embedded/view_size.h"

namespace kivra::embedded {

namespace {

void closeWindow(WindowState& state) {
  if (!std::exchange(state.isShown, false)) return;
  const auto handler = state.closeHandler;
  if (handler) handler();
}

}  // namespace

class EmbeddedWindows::EmbeddedWindow : public Window {
 public:
  explicit EmbeddedWindow(std::shared_ptr<WindowState> state) : state_(std::move(state)) {}

  void setContent(View content) override { state_->content = std::move(content); }
  void setContentSize(WindowSize size) override { state_->attributes.contentSize = size; }
  void center() override {}
  void setAlphaValue(double alpha) override {
    state_->attributes.alphaValue = alpha;
    if (alpha <= 0) state_->isShown = false;
  }
  void setLevel(int level) override { state_->level = level; }
  void makeKeyAndOrderFront() override { state_->isShown = state_->attributes.alphaValue > 0; }
  void orderBack() override {}  // there is no order to see
  void close() override { closeWindow(*state_); }
  void setCloseHandler(std::function<void()> handler) override {
    state_->closeHandler = std::move(handler);
  }

 private:
  std::shared_ptr<WindowState> state_;
};

std::shared_ptr<const WindowState> EmbeddedWindows::find(std::string_view name) const {
  const auto found = windows_.find(name);
  return found == windows_.end() ? nullptr : found->second.lock();
}

void EmbeddedWindows::close(std::string_view name) {
  const auto found = windows_.find(name);
  const auto window = found == windows_.end() ? nullptr : found->second.lock();
  if (window) closeWindow(*window);
}

Json EmbeddedWindows::toJson(const std::string& name) const {
  const auto window = find(name);
  const auto content = window ? window->content : View();
  const auto size =
      window ? window->attributes.contentSize.value_or(sizeOf(content)) : WindowSize();
  return {{"name", name},
          {"title", window ? window->attributes.title : ""},
          {"open", window && window->isShown},
          {"size", Json::array({size.width, size.height})},
          {"content", viewJson(content)}};
}

std::unique_ptr<Window> EmbeddedWindows::windowCreate(const WindowAttributes& attributes) {
  auto state = std::make_shared<WindowState>();
  state->attributes = attributes;
  windows_.insert_or_assign(attributes.name, state);
  return std::make_unique<EmbeddedWindow>(std::move(state));
}

}  // namespace kivra::embedded
