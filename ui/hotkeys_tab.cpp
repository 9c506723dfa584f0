#include "ui/hotkeys_tab.h"

#include <algorithm>
#include <utility>

#include "ui/bindings.h"
#include "ui/hotkey_conflicts.h"
#include "ui/hotkey_slots.h"
#include "ui/language_picker.h"

namespace kivra {

namespace {

using ComboProperty = Setting<ModifierCombo> SettingsStore::*;

const std::vector<ModifierCombo>& comboOptions() {
  static const auto options = [] {
    std::vector<ModifierCombo> all = {ModifierCombo::off()};
    all.insert(all.end(), ModifierCombo::presets().begin(), ModifierCombo::presets().end());
    return all;
  }();
  return options;
}

std::optional<std::size_t> indexOf(const ModifierCombo& combo) {
  const auto found = std::ranges::find(comboOptions(), combo);
  if (found == comboOptions().end()) return std::nullopt;
  return static_cast<std::size_t>(found - comboOptions().begin());
}

View comboPicker(const char* title, const std::shared_ptr<SettingsStore>& settings,
                 ComboProperty property, const Terms& terms) {
  std::vector<std::string> titles;
  titles.reserve(comboOptions().size());
  for (const auto& option : comboOptions()) titles.push_back(option.displayText(terms));
  const auto choose =
      weakly(settings, [property](SettingsStore& store, const std::optional<std::size_t>& index) {
        if (index) (store.*property).set(comboOptions().at(*index));
      });
  return views::picker(title, std::move(titles), {indexOf(((*settings).*property)()), choose});
}

View languageOfSlot(const char* title, const std::shared_ptr<SettingsStore>& settings,
                    Setting<std::string> SettingsStore::*property) {
  return LanguagePicker{title, bindingTo(settings, property)}.body();
}

}  // namespace

HotkeysTab::HotkeysTab(const Environment& environment)
    : settings_(environment.settings), terms_(environment.terms) {
  const auto conflicts = std::make_shared<HotkeyConflicts>(
      settings_, environment.englishCharacter, environment.workspace, environment.notifications,
      environment.terms);
  const HotkeyRecorderRow::Environment recording{environment.monitors, environment.englishCharacter,
                                                 environment.terms, conflicts};
  const auto recorder = [&](const HotkeySlot& slot) {
    const auto hotkey = [store = settings_, property = slot.property] {
      return bindingTo(store, property);
    };
    auto row = std::make_shared<HotkeyRecorderRow>(slot.title, hotkey, recording);
    follow(*row);
    return row;
  };
  translate1_ = recorder(hotkey_slots::translate1);
  translate2_ = recorder(hotkey_slots::translate2);
  correct_ = recorder(hotkey_slots::correct);
  manualSwitch_ = recorder(hotkey_slots::manualSwitch);
  follow(*settings_);
}

View HotkeysTab::body() {
  return views::form({combinationsSection(), hotkeysSection(), otherSection()});
}

void HotkeysTab::onDisappear() {
  for (const auto& row : {translate1_, translate2_, correct_, manualSwitch_}) row->stopRecording();
}

View HotkeysTab::combinationsSection() const {
  return views::section(
      "Быстрые комбинации (два модификатора)",
      {comboPicker("Перевод", settings_, &SettingsStore::translateCombo, terms_),
       comboPicker("Исправление опечаток/запятых", settings_, &SettingsStore::correctCombo, terms_),
       views::note("Срабатывают при отпускании. Если во время удержания нажата обычная клавиша "
                   "(например " +
                   terms_.term(Term::shortcutExample) +
                   ") — комбинация отменяется и не мешает шорткатам приложений.")});
}

View HotkeysTab::hotkeysSection() const {
  return views::section(
      "Клавишные хоткеи",
      {translate1_->body(),
       languageOfSlot("└ язык слота №1", settings_, &SettingsStore::translateHotkey1Lang),
       translate2_->body(),
       languageOfSlot("└ язык слота №2", settings_, &SettingsStore::translateHotkey2Lang),
       correct_->body(), manualSwitch_->body()});
}

View HotkeysTab::otherSection() const {
  return views::section(
      "", {views::labeledRow("Откат последнего авто-действия", "Shift Shift (двойной тап)"),
           views::toggle("Pause/Break тоже переключает раскладку",
                         bindingTo(settings_, &SettingsStore::pauseAsManualSwitch))});
}

}  // namespace kivra
