#pragma once

#include <memory>
#include <string>

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
  void setNewPattern(const std::string& pattern);
  void setNewReplacement(const std::string& replacement);

  std::shared_ptr<ReplacementStore> store_;
  std::string newPattern_;
  std::string newReplacement_;
  std::shared_ptr<const ViewRows> rows_;  ///< of the entries as they are; null when outdated
  Subscription storeChanges_;
};

}  // namespace kivra
