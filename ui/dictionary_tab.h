#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "layout/replacement_store.h"
#include "ui/hosted_view.h"

namespace kivra {

/// The user's dictionary of replacements: a new entry, and the list of those that there are.
class DictionaryTab : public HostedView, public std::enable_shared_from_this<DictionaryTab> {
 public:
  explicit DictionaryTab(std::shared_ptr<ReplacementStore> store);

  View body() override;

 private:
  View newEntrySection();
  View entriesSection();
  bool canAdd() const;
  void add();
  void remove(const Uuid& id);
  void takeBack();
  void setNewPattern(const std::string& pattern);
  void setNewReplacement(const std::string& replacement);

  struct Removed {
    ReplacementStore::Entry entry;
    std::size_t index = 0;  ///< where it stood
  };

  std::shared_ptr<ReplacementStore> store_;
  std::string newPattern_;
  std::string newReplacement_;
  std::shared_ptr<const ViewRows> rows_;  ///< of the entries as they are; null when outdated
  std::vector<Removed> removed_;          ///< by the user, the last one last
  Subscription storeChanges_;
};

}  // namespace kivra
