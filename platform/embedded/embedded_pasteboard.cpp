#include "platform/embedded/embedded_pasteboard.h"

#include <utility>

#include "platform/platform_error.h"

namespace kivra::embedded {

void EmbeddedPasteboard::setItems(std::vector<PasteboardItem> items) {
  items_ = std::move(items);
  ++changeCount_;
}

void EmbeddedPasteboard::copy(const std::string& text) {
  setItems({{{pasteboardTypeString, text}}});
  report();
}

Json EmbeddedPasteboard::toJson() const {
  auto array = Json::array();
  for (const auto& item : items_) array.push_back(Json(item));
  return array;
}

std::vector<PasteboardItem> EmbeddedPasteboard::pasteboardItems() {
  if (!refusal_.empty()) throw PlatformError(refusal_);
  return items_;
}

std::optional<std::string> EmbeddedPasteboard::stringForType(std::string_view type) {
  for (const auto& item : items_) {
    if (const auto text = item.find(std::string(type)); text != item.end()) return text->second;
  }
  return std::nullopt;
}

void EmbeddedPasteboard::clearContents() {
  setItems({});
  report();
}

void EmbeddedPasteboard::writeObjects(const std::vector<PasteboardItem>& items) {
  auto all = items_;
  all.insert(all.end(), items.begin(), items.end());
  setItems(std::move(all));
  report();
}

void EmbeddedPasteboard::setString(std::string_view text, std::string_view type) {
  writeObjects({{{std::string(type), std::string(text)}}});
}

void EmbeddedPasteboard::report() const {
  effects_.report([&] { return Json{{"pasteboard", toJson()}, {"changeCount", changeCount_}}; });
}

}  // namespace kivra::embedded
