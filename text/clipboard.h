#pragma once

#include <cstdint>
#include <vector>

#include "platform/pasteboard.h"

namespace kivra {

/// Saves and restores what the user has on the pasteboard.
class Clipboard {
 public:
  struct Snapshot {
    std::vector<PasteboardItem> items;  ///< those of which some data could be read
    std::int64_t changeCount = 0;       ///< when the snapshot was taken

    bool operator==(const Snapshot&) const = default;
  };

  explicit Clipboard(Pasteboard& pasteboard) : pasteboard_(pasteboard) {}

  Snapshot snapshot();

  /// Puts the items back in place of whatever is there.
  void restore(const Snapshot& snapshot);

 private:
  Pasteboard& pasteboard_;
};

}  // namespace kivra
