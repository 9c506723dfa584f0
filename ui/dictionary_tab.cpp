#include "ui/dictionary_tab.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "support/text.h"
#include "ui/bindings.h"

namespace kivra {

namespace {

using enum ViewStyle;

View entryRow(const ReplacementStore::Entry& entry, std::function<void()> remove) {
  auto button = views::button("", std::move(remove));
  button.symbol = "trash";
  button.accessibilityName = "Удалить «" + entry.pattern + "»";
  button.style = {borderless};
  return views::hStack(
      8, {views::text(entry.pattern), views::symbol("arrow.right", {secondary}),
          views::text(entry.replacement, {bold}), views::spacer(), std::move(button)});
}

/// The entries as they were when the rows were made.
class EntryRows : public ViewRows {
 public:
  EntryRows(std::vector<ReplacementStore::Entry> entries, std::function<void(const Uuid&)> remove)
      : entries_(std::move(entries)), remove_(std::move(remove)) {}

  std::size_t count() const override { return entries_.size(); }
  std::string id(std::size_t index) const override { return entries_.at(index).id.text(); }
  View row(std::size_t index) const override {
    const auto& entry = entries_.at(index);
    return entryRow(entry, [remove = remove_, id = entry.id] { remove(id); });
  }
  std::string searchText(std::size_t index) const override { return entries_.at(index).pattern; }
  void remove(std::size_t index) const override { remove_(entries_.at(index).id); }

 private:
  std::vector<ReplacementStore::Entry> entries_;
  std::function<void(const Uuid&)> remove_;
};

}  // namespace

DictionaryTab::DictionaryTab(std::shared_ptr<ReplacementStore> store)
    : store_(std::move(store)), storeChanges_(store_->observe([this] { rows_.reset(); })) {
  follow(*store_);
}

View DictionaryTab::body() {
  auto form = views::form({newEntrySection(), entriesSection()});
  form.undo = weakly(weak_from_this(), [](DictionaryTab& self) { self.takeBack(); });
  return form;
}

View DictionaryTab::newEntrySection() {
  return views::section(
      "Новая запись",
      {views::textField("Что набрано (любая раскладка: мучщк или vexor)",
                        bindingTo(weak_from_this(), newPattern_, &DictionaryTab::setNewPattern)),
       views::textField(
           "На что заменить (например VEXOR)",
           bindingTo(weak_from_this(), newReplacement_, &DictionaryTab::setNewReplacement)),
       views::button("Добавить", weakly(weak_from_this(), [](DictionaryTab& self) { self.add(); }),
                     canAdd())});
}

View DictionaryTab::entriesSection() {
  const auto count = store_->entries().size();
  auto section = views::section("Записи (" + std::to_string(count) + ")", {});
  if (count == 0) {
    section.children.push_back(
        views::note("Пусто. Добавь пары «набрал → хотел» — Kivra заменит их после пробела, в какой "
                    "бы раскладке ты ни печатал."));
    return section;
  }
  if (!rows_) {
    rows_ = std::make_shared<const EntryRows>(
        store_->entries(),
        weakly(weak_from_this(), [](DictionaryTab& self, const Uuid& id) { self.remove(id); }));
  }
  section.rows = rows_;
  return section;
}

bool DictionaryTab::canAdd() const {
  return text::characterCount(text::trimmedSpaces(newPattern_)) >= 2 &&
         !text::trimmedSpaces(newReplacement_).empty();
}

void DictionaryTab::add() {
  store_->add(newPattern_, newReplacement_);
  setNewPattern("");
  setNewReplacement("");
}

void DictionaryTab::remove(const Uuid& id) {
  const auto& entries = store_->entries();
  const auto found = std::ranges::find(entries, id, &ReplacementStore::Entry::id);
  if (found == entries.end()) return;
  removed_.push_back({*found, static_cast<std::size_t>(found - entries.begin())});
  store_->remove(id);
}

void DictionaryTab::takeBack() {
  if (removed_.empty()) return;
  const auto [entry, index] = removed_.back();
  removed_.pop_back();
  // Meanwhile the user may have entered the same again.
  if (store_->index().contains(ReplacementStore::normalize(entry.pattern))) return;
  auto entries = store_->entries();
  const auto place = std::min(index, entries.size());
  entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(place), entry);
  store_->setEntries(std::move(entries));
}

void DictionaryTab::setNewPattern(const std::string& pattern) {
  willChange();
  newPattern_ = pattern;
}

void DictionaryTab::setNewReplacement(const std::string& replacement) {
  willChange();
  newReplacement_ = replacement;
}

}  // namespace kivra
