#include "platform/x11/x11_pasteboard.h"

#include <utility>

#include "platform/platform_error.h"

namespace kivra::x11 {

namespace {

using namespace std::chrono_literals;

/// Most answers come within this time, from the server.
constexpr auto prompt = std::chrono::milliseconds(5);

constexpr const char* notHandedOver =
    "Буфер обмена оставлен как есть: программа, которой он принадлежит, не отвечает.";

}  // namespace

X11Pasteboard::X11Pasteboard(RunLoop& runLoop, const Options& options)
    : runLoop_(runLoop), thread_(options.display, options.waits) {}

template <class Result>
Result X11Pasteboard::ask(std::function<Result(ClipboardSelection&)> question) {
  const auto task =
      std::make_shared<std::packaged_task<Result(ClipboardSelection&)>>(std::move(question));
  auto answer = task->get_future();
  thread_.post([task](ClipboardSelection& selection) { (*task)(selection); });
  answer.wait_for(prompt);
  runLoop_.runUntil([&] { return answer.wait_for(0s) == std::future_status::ready; });
  return answer.get();
}

std::int64_t X11Pasteboard::changeCount() {
  publish();
  return ask<std::int64_t>([](ClipboardSelection& selection) { return selection.changeCount(); });
}

std::vector<PasteboardItem> X11Pasteboard::pasteboardItems() {
  publish();
  auto contents = ask<std::optional<ClipboardSelection::Contents>>(
      [](ClipboardSelection& selection) { return selection.contents(); });
  if (!contents) throw PlatformError(notHandedOver);
  read_ = std::move(contents);
  return read_->items;
}

std::optional<std::string> X11Pasteboard::stringForType(std::string_view type) {
  publish();
  return ask<std::optional<std::string>>(
      [name = std::string(type)](ClipboardSelection& selection) { return selection.text(name); });
}

// Clearing is usually followed by writing. Clipboard managers read each new selection at once, and
// some put an old one back when it is empty: they see only what stays.
void X11Pasteboard::clearContents() {
  *written_ = {.items = {}, .isPending = true};
  runLoop_.asyncAfter(std::chrono::microseconds(0), [this, weak = std::weak_ptr(written_)] {
    if (weak.lock()) publish();
  });
}

void X11Pasteboard::writeObjects(const std::vector<PasteboardItem>& items) {
  written_->items.insert(written_->items.end(), items.begin(), items.end());
  written_->isPending = true;
  publish();
}

void X11Pasteboard::setString(std::string_view text, std::string_view type) {
  writeObjects({{{std::string(type), std::string(text)}}});
}

// Who puts back what is still there would take it from an owner that can do more with it.
void X11Pasteboard::publish() {
  if (!std::exchange(written_->isPending, false)) return;
  ask<bool>([items = written_->items,
             read = std::exchange(read_, std::nullopt)](ClipboardSelection& selection) {
    const auto isStillThere =
        read && read->changeCount == selection.changeCount() && read->items == items;
    if (!isStillThere) selection.own(items);
    return isStillThere;
  });
}

}  // namespace kivra::x11
