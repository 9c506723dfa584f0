#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kivra {

/// One item of a pasteboard: bytes by type identifier.
using PasteboardItem = std::map<std::string, std::string>;

/// The type identifier of plain text in UTF-8.
inline constexpr const char* pasteboardTypeString = "public.utf8-plain-text";

/// The general pasteboard. An owner that gives no sign of life for 3 s is given up, and so is one
/// that has not handed over everything after 8 s. May keep the run loop turning while it waits.
/// What cannot be written is left out.
class Pasteboard {
 public:
  virtual ~Pasteboard() = default;

  /// A number that grows with every change, whoever makes it.
  virtual std::int64_t changeCount() = 0;

  /// All items in their order, each with the types whose data could be read; an item may be empty.
  /// Throws PlatformError when the owner does not hand everything over, though it is there: what is
  /// put in its place then could not be undone.
  virtual std::vector<PasteboardItem> pasteboardItems() = 0;

  /// The text of the first item that holds text of this type, or nothing.
  virtual std::optional<std::string> stringForType(std::string_view type) = 0;

  /// Takes the pasteboard over and empties it.
  virtual void clearContents() = 0;

  /// Adds the items to a pasteboard that was just cleared.
  virtual void writeObjects(const std::vector<PasteboardItem>& items) = 0;

  /// Adds one item of this type to a pasteboard that was just cleared.
  virtual void setString(std::string_view text, std::string_view type) = 0;
};

}  // namespace kivra
