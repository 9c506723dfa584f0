#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/embedded/effects.h"
#include "platform/pasteboard.h"

namespace kivra::embedded {

/// The general pasteboard. What the program and the application in front do to it is reported.
class EmbeddedPasteboard : public Pasteboard {
 public:
  explicit EmbeddedPasteboard(Effects& effects) : effects_(effects) {}

  const std::vector<PasteboardItem>& items() const { return items_; }

  /// The user puts items there by way of some other application.
  void setItems(std::vector<PasteboardItem> items);

  /// The application in front copies text.
  void copy(const std::string& text);

  /// From now on nothing can be read, for this reason.
  void setRefusal(std::string reason) { refusal_ = std::move(reason); }

  Json toJson() const;

  std::int64_t changeCount() override { return changeCount_; }
  std::vector<PasteboardItem> pasteboardItems() override;
  std::optional<std::string> stringForType(std::string_view type) override;
  void clearContents() override;
  void writeObjects(const std::vector<PasteboardItem>& items) override;
  void setString(std::string_view text, std::string_view type) override;

 private:
  void report() const;

  Effects& effects_;
  std::vector<PasteboardItem> items_;
  std::int64_t changeCount_ = 0;
  std::string refusal_;
};

}  // namespace kivra::embedded
