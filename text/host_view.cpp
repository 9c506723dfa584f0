#include "text/host_view.h"

#include <chrono>
#include <utility>

#include "support/view_builders.h"

namespace kivra {

namespace {

View announcement() {
  using enum ViewStyle;
  auto view = views::vStack(
      8, {views::text("Kivra — Apple Translate", {headline}),
          views::note("Нужен языковой пакет. Подтверди загрузку в системном диалоге."),
          views::progress()});
  view.padding = 20;
  return view;
}

}  // namespace

HostView::HostView(std::shared_ptr<Coordinator> coordinator, Window& window,
                   Translation& translation, RunLoop& runLoop)
    : coordinator_(std::move(coordinator)),
      window_(window),
      translation_(translation),
      runLoop_(runLoop) {}

void HostView::observe() {
  subscription_ = coordinator_->observe([weak = weak_from_this()] {
    if (const auto view = weak.lock()) view->scheduleUpdate();
  });
  window_.setContent(body());
}

View HostView::body() const { return coordinator_->downloadVisible() ? announcement() : View(); }

// The coordinator announces a change before it makes it.
void HostView::scheduleUpdate() {
  if (std::exchange(isUpdateScheduled_, true)) return;
  runLoop_.asyncAfter(std::chrono::microseconds(0), [weak = weak_from_this()] {
    if (const auto view = weak.lock()) view->update();
  });
}

void HostView::update() {
  isUpdateScheduled_ = false;
  window_.setContent(body());
  const auto& configuration = coordinator_->configuration();
  if (!configuration || configuration == lastTask_) return;
  lastTask_ = configuration;
  startTask(runLoop_, coordinator_,
            coordinator_->handle(translation_.session(configuration->languages)));
}

}  // namespace kivra
