#pragma once

#include <chrono>

#include "platform/pasteboard.h"
#include "platform/selection/selection_reader.h"

namespace kivra {

/// What an owner has handed over of everything that it offers.
struct SelectionSnapshot {
  PasteboardItem item;
  bool isWhole = true;  ///< false: it stopped before the end
};

/// Reads all data that the owner offers. Further encodings of a picture are left out when they take
/// longer than `alternatives`; what the owner refuses is not missed.
SelectionSnapshot readSelection(SelectionReader& reader, std::chrono::milliseconds alternatives,
                                SelectionReader::Moment until);

}  // namespace kivra
