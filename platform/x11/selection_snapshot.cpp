#include "platform/x11/selection_snapshot.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

#include "platform/x11/selection_contents.h"

namespace kivra::x11 {

using Clock = std::chrono::steady_clock;

SelectionSnapshot readSelection(SelectionReader& reader, SelectionReader::Moment until) {
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
    auto given = reader.convert(target, isAlternative ? *alternativesUntil : until);
    if (given && isBytes(*given)) {
      snapshot.item[typeOfTarget(target)] = std::move(given->bytes);
      if (isPicture(target) && !alternativesUntil) {
        alternativesUntil = std::min(until, Clock::now() + reader.waits().alternatives);
      }
    } else if (!given && !isAlternative) {
      snapshot.isWhole = false;
      break;
    }
  }
  return snapshot;
}

bool isBytes(const SelectionReader::Converted& given) { return given.format == 8; }

}  // namespace kivra::x11
