#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/pasteboard.h"
#include "platform/run_loop.h"
#include "platform/selection/selection_thread.h"

namespace kivra {

/// The clipboard of a display as a pasteboard. It is one item; types are target names, except that
/// of plain text. Keeps the run loop turning while it waits for another program.
class SelectionPasteboard : public Pasteboard {
 public:
  SelectionPasteboard(RunLoop& runLoop, SelectionThread::Make make);

  std::int64_t changeCount() override;
  std::vector<PasteboardItem> pasteboardItems() override;
  std::optional<std::string> stringForType(std::string_view type) override;
  void clearContents() override;
  void writeObjects(const std::vector<PasteboardItem>& items) override;
  void setString(std::string_view text, std::string_view type) override;

 private:
  struct Written {
    std::vector<PasteboardItem> items;
    bool isPending = false;  // cleared here, not yet on the display
  };

  template <class Result>
  Result ask(std::function<Result(Selection&)> question);
  void publish();

  RunLoop& runLoop_;
  std::optional<Selection::Contents> read_;  // until something is written
  std::shared_ptr<Written> written_ = std::make_shared<Written>();
  SelectionThread thread_;
};

}  // namespace kivra
