#pragma once

#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>

#include "platform/pasteboard.h"
#include "platform/run_loop.h"
#include "platform/x11/selection_reader.h"
#include "platform/x11/selection_thread.h"

namespace kivra::x11 {

/// The CLIPBOARD selection of the X server. It is one item; types are target names, except that of
/// plain text. Keeps the run loop turning while it waits for another program.
class X11Pasteboard : public Pasteboard {
 public:
  struct Options {
    std::string display{};  ///< empty: that of the environment
    SelectionReader::Waits waits{};
  };

  explicit X11Pasteboard(RunLoop& runLoop) : X11Pasteboard(runLoop, Options{}) {}
  X11Pasteboard(RunLoop& runLoop, const Options& options);

  std::int64_t changeCount() override;
  std::vector<PasteboardItem> pasteboardItems() override;
  std::optional<std::string> stringForType(std::string_view type) override;
  void clearContents() override;
  void writeObjects(const std::vector<PasteboardItem>& items) override;
  void setString(std::string_view text, std::string_view type) override;

 private:
  struct Written {
    std::vector<PasteboardItem> items;
    bool isPending = false;  // cleared here, not yet on the server
  };

  template <class Result>
  Result ask(std::function<Result(ClipboardSelection&)> question);
  void publish();

  RunLoop& runLoop_;
  std::optional<ClipboardSelection::Contents> read_;  // until something is written
  std::shared_ptr<Written> written_ = std::make_shared<Written>();
  SelectionThread thread_;
};

}  // namespace kivra::x11
