#include "platform/x11/selection_snapshot.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/x11/selection_contents.h"

namespace kivra::x11 {

SelectionSnapshot readSelection(SelectionReader& reader, SelectionReader::Moment until) {
  SelectionSnapshot snapshot;
  const auto alternativesUntil = std::chrono::steady_clock::now() + reader.waits().alternatives;
  auto targets = reader.targets(until);
  snapshot.isWhole = targets.has_value();
  if (!targets) return snapshot;
  sortByWorth(*targets);
  auto hasPicture = false;
  for (const auto& target : *targets) {
    if (!isData(target) || snapshot.item.contains(typeOfTarget(target))) continue;
    const auto isAlternative = hasPicture && isPicture(target);
    auto given = reader.convert(target, isAlternative ? std::min(until, alternativesUntil) : until);
    if (given && isBytes(*given)) {
      snapshot.item[typeOfTarget(target)] = std::move(given->bytes);
      hasPicture = hasPicture || isPicture(target);
    } else if (!given && !isAlternative) {
      snapshot.isWhole = false;
      break;
    }
  }
  return snapshot;
}

bool isBytes(const SelectionReader::Converted& given) { return given.format == 8; }

}  // namespace kivra::x11
