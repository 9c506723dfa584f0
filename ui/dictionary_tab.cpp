#include "ui/dictionary_tab.h"

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
  explicit EntryRows(const std::shared_ptr<ReplacementStore>& store)
      : store_(store), entries_(store->entries()) {}

  std::size_t count() const override { return entries_.size(); }
  std::string id(std::size_t index) const override { return entries_.at(index).id.text(); }
  View row(std::size_t index) const override {
    const auto& entry = entries_.at(index);
    return entryRow(entry,
                    weakly(store_, [id = entry.id](ReplacementStore& store) { store.remove(id); }));
  }

 private:
  std::weak_ptr<ReplacementStore> store_;
  std::vector<ReplacementStore::Entry> entries_;
};

}  // namespace

DictionaryTab::DictionaryTab(std::shared_ptr<ReplacementStore> store)
    : store_(std::move(store)), storeChanges_(store_->observe([this] { rows_.reset(); })) {
  follow(*store_);
}

View DictionaryTab::body() { return views::form({newEntrySection(), entriesSection()}); }

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
  if (!rows_) rows_ = std::make_shared<const EntryRows>(store_);
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

void DictionaryTab::setNewPattern(const std::string& pattern) {
  willChange();
  newPattern_ = pattern;
}

void DictionaryTab::setNewReplacement(const std::string& replacement) {
  willChange();
  newReplacement_ = replacement;
}

}  // namespace kivra
