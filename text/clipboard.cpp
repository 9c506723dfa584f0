#include "text/clipboard.h"

namespace kivra {

Clipboard::Snapshot Clipboard::snapshot() {
  Snapshot saved{.items = pasteboard_.pasteboardItems()};
  std::erase_if(saved.items, [](const PasteboardItem& item) { return item.empty(); });
  saved.changeCount = pasteboard_.changeCount();
  return saved;
}

void Clipboard::restore(const Snapshot& snapshot) {
  pasteboard_.clearContents();
  if (!snapshot.items.empty()) pasteboard_.writeObjects(snapshot.items);
}

}  // namespace kivra
