#pragma once

#include <gio/gio.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/atspi/accessible_object.h"
#include "platform/atspi/accessible_text_part.h"
#include "platform/io/variant_pointer.h"

namespace kivra {

/// Reads the text of one object. All calls together end by the deadline.
class AccessibleText {
 public:
  using Moment = std::chrono::steady_clock::time_point;

  AccessibleText(GDBusConnection* bus, const AccessibleObject& object, Moment deadline)
      : bus_(bus), object_(object), deadline_(deadline) {}

  /// Nothing when the object has no such text, has lost the focus, reads a password, or does not
  /// answer. No selection is an empty text. The whole text is that of a plain text field only: what
  /// "select all" selects elsewhere is more than one object's text.
  std::optional<std::string> read(AccessibleTextPart part);

  /// Where the selection of the focused object begins, in characters; nothing without one.
  std::optional<std::int32_t> selectionStart();

 private:
  struct Range {
    std::int32_t start = 0;
    std::int32_t end = 0;
  };

  VariantPointer call(const char* interface, const char* method, GVariant* arguments,
                      const char* replyType);
  std::optional<std::uint32_t> role();
  std::optional<std::uint64_t> states();
  std::optional<Range> selectedRange();
  std::optional<std::string> selection();
  std::optional<std::string> textBetween(std::int32_t start, std::int32_t end);

  GDBusConnection* bus_;
  AccessibleObject object_;
  Moment deadline_;
};

}  // namespace kivra
