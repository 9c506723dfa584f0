#include "platform/embedded/embedded_pasteboard.h"

#include <utility>

namespace kivra::embedded {

void EmbeddedPasteboard::setItems(std::vector<Item> items) {
  items_ = std::move(items);
  ++changeCount_;
}

std::string EmbeddedPasteboard::plainText() const {
  for (const auto& item : items_) {
    if (const auto text = item.find(plainTextType); text != item.end()) return text->second;
  }
  return {};
}

void EmbeddedPasteboard::copy(const std::string& text) {
  setItems({{{plainTextType, text}}});
  effects_.report([&] { return Json{{"pasteboard", toJson()}, {"changeCount", changeCount_}}; });
}

Json EmbeddedPasteboard::toJson() const {
  auto array = Json::array();
  for (const auto& item : items_) array.push_back(Json(item));
  return array;
}

}  // namespace kivra::embedded
