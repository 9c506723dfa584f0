#include "platform/selection/selection_snapshot.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/selection/selection_contents.h"

namespace kivra {

using Clock = std::chrono::steady_clock;

SelectionSnapshot readSelection(SelectionReader& reader, std::chrono::milliseconds alternatives,
                                SelectionReader::Moment until) {
  SelectionSnapshot snapshot;
  auto targets = reader.targets(until);
  snapshot.isWhole = targets.has_value();
  if (!targets) return snapshot;
  sortByWorth(*targets);
  std::optional<SelectionReader::Moment> alternativesUntil;  // since a picture was read
  for (const auto& target : *targets) {
    if (!isData(target) || snapshot.item.contains(typeOfTarget(target))) continue;
    const auto isAlternative = alternativesUntil && isPicture(target);
    if (isAlternative && Clock::now() >= *alternativesUntil) continue;
    auto given = reader.read(target, isAlternative ? *alternativesUntil : until);
    if (given && given->bytes) {
      snapshot.item[typeOfTarget(target)] = std::move(*given->bytes);
      if (isPicture(target) && !alternativesUntil) {
        alternativesUntil = std::min(until, Clock::now() + alternatives);
      }
    } else if (!given && !isAlternative) {
      snapshot.isWhole = false;
      break;
    }
  }
  return snapshot;
}

}  // namespace kivra
