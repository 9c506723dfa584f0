#include "platform/selection/selection.h"

#include <utility>

#include "platform/selection/selection_snapshot.h"

namespace kivra {

using Clock = std::chrono::steady_clock;

std::int64_t Selection::changeCount() {
  catchUp();
  return changeCount_;
}

std::optional<Selection::Contents> Selection::contents() {
  if (!isConnected()) return Contents{};
  const auto until = Clock::now() + waits_.whole;
  for (;;) {
    askedAt_ = changeCount();
    const auto asked = owner();
    if (asked == Owner::nobody) return Contents{.items = {}, .changeCount = askedAt_};
    auto read = asked == Owner::us ? SelectionSnapshot{ownItem()}
                                   : readSelection(reader(), waits_.alternatives, until);
    const auto isSameOwner = changeCount() == askedAt_;
    if (!isConnected()) return Contents{};
    // Of what died with its owner there is nothing but what was read before.
    const auto isDead = !isSameOwner && owner() == Owner::nobody;
    if ((isSameOwner && read.isWhole) || isDead) {
      Contents contents{.items = {}, .changeCount = askedAt_};
      if (!read.item.empty()) contents.items.push_back(std::move(read.item));
      return contents;
    }
    if (isSameOwner || Clock::now() >= until) return std::nullopt;
  }
}

PasteboardItem Selection::ownItem() const {
  PasteboardItem item;
  for (const auto& [target, data] : offered()) {
    if (isData(target)) item[typeOfTarget(target)] = *data;
  }
  return item;
}

std::optional<std::string> Selection::text(const std::string& type) {
  if (!isConnected()) return std::nullopt;
  const auto until = Clock::now() + waits_.whole;
  for (;;) {
    askedAt_ = changeCount();
    auto read = textOfOwner(type, until);
    // Some programs, and clipboard managers behind them, take the selection twice at a time.
    if (read || changeCount() == askedAt_ || Clock::now() >= until) return read;
  }
}

std::optional<std::string> Selection::textOfOwner(const std::string& type,
                                                  SelectionReader::Moment until) {
  std::vector<std::string> names = {targetOfType(type)};
  if (type == pasteboardTypeString) {
    names.insert(names.end(),
                 {target_names::mimeUtf8, target_names::latin1, target_names::mimeText});
  }
  const auto isOurs = owner() == Owner::us;
  for (const auto& name : names) {
    std::optional<std::string> bytes;
    if (!isOurs) {
      auto given = reader().read(name, until);
      if (!given) return std::nullopt;
      bytes = std::move(given->bytes);
    } else if (const auto found = offered().find(name); found != offered().end()) {
      bytes = *found->second;
    }
    if (bytes) return name == target_names::latin1 ? utf8OfLatin1(*bytes) : std::move(*bytes);
  }
  return std::nullopt;
}

}  // namespace kivra
