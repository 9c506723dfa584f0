#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/embedded/effects.h"

namespace kivra::embedded {

/// The general pasteboard: items that hold data by type.
class EmbeddedPasteboard {
 public:
  using Item = std::map<std::string, std::string>;

  static constexpr const char* plainTextType = "public.utf8-plain-text";

  explicit EmbeddedPasteboard(Effects& effects) : effects_(effects) {}

  const std::vector<Item>& items() const { return items_; }
  void setItems(std::vector<Item> items);

  /// The plain text of the first item that has some; empty when none has.
  std::string plainText() const;

  /// The application in front copies text.
  void copy(const std::string& text);

  Json toJson() const;

 private:
  Effects& effects_;
  std::vector<Item> items_;
  int changeCount_ = 0;
};

}  // namespace kivra::embedded
