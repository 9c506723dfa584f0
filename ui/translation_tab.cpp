#include "ui/translation_tab.h"

#include <string_view>
#include <utility>

#include "text/deepl_addresses.h"
#include "ui/bindings.h"
#include "ui/language_picker.h"

namespace kivra {

namespace {

using enum ViewStyle;

const char* title(EngineKind kind) {
  switch (kind) {
    case EngineKind::appleTranslate:
      return "Apple Translate (офлайн)";
    case EngineKind::foundationModel:
      return "Apple Intelligence (macOS 26+)";
    case EngineKind::deepL:
      return "DeepL";
  }
  return "";
}

std::string keyNote(std::string_view key) {
  if (key.empty()) {
    return "Без ключа DeepL недоступен — а на этой версии macOS он же выполняет исправление "
           "опечаток (⌃⌥C).";
  }
  if (key.ends_with(deepl_addresses::freeKeySuffix)) {
    return std::string("Ключ Free-плана (") + deepl_addresses::freeHost + ").";
  }
  return std::string("Ключ Pro-плана (") + deepl_addresses::proHost + ").";
}

}  // namespace

TranslationTab::TranslationTab(std::shared_ptr<SettingsStore> settings, KeychainStore& keychain,
                               TextEngines& engines)
    : settings_(std::move(settings)), keychain_(keychain), engines_(engines) {
  if (!keychain_.mayAskUser()) deepLKey_ = keychain_.read(deepLKeyAccount).value_or("");
  follow(*settings_);
}

void TranslationTab::onAppear() {
  if (!keychain_.mayAskUser() || isEdited_ || !deepLKey_.empty()) return;
  if (std::exchange(isReading_, true)) return;
  keychain_.readLater(deepLKeyAccount, [weak = weak_from_this()](std::optional<std::string> key) {
    const auto self = weak.lock();
    if (!self) return;
    self->isReading_ = false;
    if (self->isEdited_ || !key) return;
    self->willChange();
    self->deepLKey_ = *std::move(key);
  });
}

View TranslationTab::body() {
  return views::form({engineSection(), quickTranslationSection(), keySection()});
}

View TranslationTab::engineSection() {
  std::vector<std::string> titles;
  titles.reserve(allEngineKinds.size());
  for (const auto kind : allEngineKinds) titles.emplace_back(title(kind));
  const auto selected = settings_->translationEngine();
  const auto choose =
      weakly(settings_, [](SettingsStore& settings, const std::optional<std::size_t>& index) {
        if (index) settings.translationEngine.set(allEngineKinds.at(*index));
      });
  auto section =
      views::section("Движок", {views::picker("Движок перевода", std::move(titles),
                                              {static_cast<std::size_t>(selected), choose})});
  if (selected == EngineKind::foundationModel && engines_.foundationModelIfAvailable() == nullptr) {
    section.children.push_back(
        views::label("Apple Intelligence недоступен на этой версии macOS — будет использован DeepL",
                     "exclamationmark.triangle", {orange, callout}));
  }
  return section;
}

View TranslationTab::quickTranslationSection() const {
  const LanguagePicker picker{"Целевой язык",
                              bindingTo(settings_, &SettingsStore::ctrlFnTargetLang)};
  return views::section(
      "Быстрый перевод (комбинация " + settings_->translateCombo().displayText() + ")",
      {picker.body(), views::note("Сама комбинация настраивается во вкладке «Хоткеи». Если текст "
                                  "уже на целевом языке — переводится на язык системы.")});
}

View TranslationTab::keySection() {
  return views::section(
      "DeepL",
      {views::secureField("API-ключ (хранится в Keychain)",
                          bindingTo(weak_from_this(), deepLKey_, &TranslationTab::setDeepLKey)),
       views::note(keyNote(deepLKey_))});
}

void TranslationTab::setDeepLKey(const std::string& key) {
  willChange();
  deepLKey_ = key;
  isEdited_ = true;
  // While the keychain is waited for, the run loop brings further edits: one write at a time, and
  // the newest text last.
  if (std::exchange(isWriting_, true)) return;
  std::string written;
  do {
    written = deepLKey_;
    keychain_.write(written, deepLKeyAccount);
  } while (written != deepLKey_);
  isWriting_ = false;
}

}  // namespace kivra
