#include "platform/selection/selection_pasteboard.h"

#include <future>
#include <utility>

#include "platform/platform_error.h"

namespace kivra {

namespace {

using namespace std::chrono_literals;

/// Most answers come within this time, from the display.
constexpr auto prompt = std::chrono::milliseconds(5);

constexpr const char* notHandedOver =
    "Буфер обмена оставлен как есть: программа, которой он принадлежит, не отвечает.";

}  // namespace

SelectionPasteboard::SelectionPasteboard(RunLoop& runLoop, SelectionThread::Make make)
    : runLoop_(runLoop), thread_(std::move(make)) {}

template <class Result>
Result SelectionPasteboard::ask(std::function<Result(Selection&)> question) {
  const auto task = std::make_shared<std::packaged_task<Result(Selection&)>>(std::move(question));
  auto answer = task->get_future();
  thread_.post([task](Selection& selection) { (*task)(selection); });
  answer.wait_for(prompt);
  runLoop_.runUntil([&] { return answer.wait_for(0s) == std::future_status::ready; });
  return answer.get();
}

std::int64_t SelectionPasteboard::changeCount() {
  publish();
  return ask<std::int64_t>([](Selection& selection) { return selection.changeCount(); });
}

std::vector<PasteboardItem> SelectionPasteboard::pasteboardItems() {
  publish();
  auto contents = ask<std::optional<Selection::Contents>>(
      [](Selection& selection) { return selection.contents(); });
  if (!contents) throw PlatformError(notHandedOver);
  read_ = std::move(contents);
  return read_->items;
}

std::optional<std::string> SelectionPasteboard::stringForType(std::string_view type) {
  publish();
  return ask<std::optional<std::string>>(
      [name = std::string(type)](Selection& selection) { return selection.text(name); });
}

// Clearing is usually followed by writing. Clipboard managers read each new selection at once, and
// some put an old one back when it is empty: they see only what stays.
void SelectionPasteboard::clearContents() {
  *written_ = {.items = {}, .isPending = true};
  runLoop_.asyncAfter(std::chrono::microseconds(0), [this, weak = std::weak_ptr(written_)] {
    if (weak.lock()) publish();
  });
}

void SelectionPasteboard::writeObjects(const std::vector<PasteboardItem>& items) {
  written_->items.insert(written_->items.end(), items.begin(), items.end());
  written_->isPending = true;
  publish();
}

void SelectionPasteboard::setString(std::string_view text, std::string_view type) {
  writeObjects({{{std::string(type), std::string(text)}}});
}

// Who puts back what is still there would take it from an owner that can do more with it.
void SelectionPasteboard::publish() {
  if (!std::exchange(written_->isPending, false)) return;
  ask<bool>(
      [items = written_->items, read = std::exchange(read_, std::nullopt)](Selection& selection) {
        const auto isStillThere =
            read && read->changeCount == selection.changeCount() && read->items == items;
        if (!isStillThere) selection.own(items);
        return isStillThere;
      });
}

}  // namespace kivra
