#pragma once

#include "platform/pasteboard.h"
#include "platform/x11/selection_reader.h"

namespace kivra::x11 {

/// What an owner has handed over of everything that it offers.
struct SelectionSnapshot {
  PasteboardItem item;
  bool isWhole = true;  ///< false: it stopped before the end
};

/// Reads all data that the owner offers. Further encodings of a picture are left out when they take
/// long; what the owner refuses is not missed.
SelectionSnapshot readSelection(SelectionReader& reader, SelectionReader::Moment until);

/// The owner gave bytes: words mean something only together with their order and the server's
/// numbers in them.
bool isBytes(const SelectionReader::Converted& given);

}  // namespace kivra::x11
