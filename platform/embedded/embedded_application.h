#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/embedded/embedded_input_sources.h"
#include "platform/embedded/embedded_pasteboard.h"
#include "platform/embedded/text_field.h"
#include "platform/events.h"
#include "platform/xkb/xkb_compose.h"

namespace kivra::embedded {

/// The application in front with its focused text field: what becomes of keys that arrive there.
struct FrontApplication {
  std::optional<std::string> identifier = "org.example.Editor";
  bool accessible = true;
  bool secure = false;
  bool copies = true;  ///< reacts to Command+C
  TextField field;
};

/// Delivers keys to the focused field as an ordinary text view takes them.
class EmbeddedApplication {
 public:
  EmbeddedApplication(EmbeddedInputSources& sources, EmbeddedPasteboard& pasteboard)
      : sources_(sources), pasteboard_(pasteboard) {}

  FrontApplication& front() { return front_; }

  /// Another field gets the focus.
  void focus(FrontApplication front);

  /// The selection was set by something else than a key or a click.
  void cursorMoved() { ++placesOfCursor_; }

  /// Grows with each new focus and each call of `cursorMoved`.
  std::uint64_t placesOfCursor() const { return placesOfCursor_; }

  void keyDown(std::uint16_t keyCode, std::uint64_t flags, const std::string& unicodeString);

  /// A click, which ends what was being composed.
  void mouseDown() { deadKey_.reset(); }

  /// Text arrives without a key.
  void insert(const std::string& text);

 private:
  void commandKey(std::uint16_t keyCode);
  bool editingKey(std::uint16_t keyCode, bool shift);
  void characterKey(std::uint16_t keyCode, bool shift);

  EmbeddedInputSources& sources_;
  EmbeddedPasteboard& pasteboard_;
  FrontApplication front_;
  std::uint64_t placesOfCursor_ = 0;
  XkbCompose compose_;
  std::optional<std::uint32_t> deadKey_;
};

}  // namespace kivra::embedded
