#include "ui/hotkeys_tab.h"

#include <algorithm>
#include <utility>

#include "ui/bindings.h"
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
                 ComboProperty property) {
  std::vector<std::string> titles;
  titles.reserve(comboOptions().size());
  for (const auto& option : comboOptions()) titles.push_back(option.displayText());
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

HotkeysTab::HotkeysTab(std::shared_ptr<SettingsStore> settings, LocalKeyMonitors& monitors,
                       const EnglishCharacter& englishCharacter)
    : settings_(std::move(settings)) {
  const auto recorder = [&](const char* title, Setting<Hotkey> SettingsStore::*property) {
    auto row = std::make_shared<HotkeyRecorderRow>(
        title, [store = settings_, property] { return bindingTo(store, property); }, monitors,
        englishCharacter);
    follow(*row);
    return row;
  };
  translate1_ = recorder("Перевод №1", &SettingsStore::translateHotkey1);
  translate2_ = recorder("Перевод №2", &SettingsStore::translateHotkey2);
  correct_ = recorder("Исправление (запасной)", &SettingsStore::correctHotkey);
  manualSwitch_ = recorder("Ручное переключение раскладки", &SettingsStore::manualSwitchHotkey);
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
      {comboPicker("Перевод", settings_, &SettingsStore::translateCombo),
       comboPicker("Исправление опечаток/запятых", settings_, &SettingsStore::correctCombo),
       views::note("Срабатывают при отпускании. Если во время удержания нажата обычная клавиша "
                   "(например ⌘⇧S) — комбинация отменяется и не мешает шорткатам приложений.")});
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
