#include "ui/translation_tab.h"

#include <string_view>
#include <utility>

#include "text/deepl_addresses.h"
#include "ui/bindings.h"
#include "ui/language_picker.h"

namespace kivra {

namespace {

using enum ViewStyle;

std::string title(EngineKind kind, const Terms& terms) {
  switch (kind) {
    case EngineKind::appleTranslate:
      return terms.term(Term::offlineTranslator);
    case EngineKind::foundationModel:
      return terms.term(Term::localModel);
    case EngineKind::deepL:
      return "DeepL";
  }
  return "";
}

std::string keyNote(std::string_view key, const Terms& terms) {
  if (key.empty()) {
    return "Без ключа DeepL недоступен — а " + terms.term(Term::withoutLocalModel) +
           " он же выполняет исправление опечаток (" + terms.term(Term::correctionExample) + ").";
  }
  if (key.ends_with(deepl_addresses::freeKeySuffix)) {
    return std::string("Ключ Free-плана (") + deepl_addresses::freeHost + ").";
  }
  return std::string("Ключ Pro-плана (") + deepl_addresses::proHost + ").";
}

}  // namespace

TranslationTab::TranslationTab(std::shared_ptr<SettingsStore> settings, KeychainStore& keychain,
                               TextEngines& engines, const Terms& terms)
    : settings_(std::move(settings)), keychain_(keychain), engines_(engines), terms_(terms) {
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
  for (const auto kind : allEngineKinds) titles.push_back(title(kind, terms_));
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
        views::label(terms_.term(Term::localModelMissing) + " — будет использован DeepL",
                     "exclamationmark.triangle", {orange, callout}));
  }
  return section;
}

View TranslationTab::quickTranslationSection() const {
  const LanguagePicker picker{"Целевой язык",
                              bindingTo(settings_, &SettingsStore::ctrlFnTargetLang)};
  return views::section(
      "Быстрый перевод (комбинация " + settings_->translateCombo().displayText(terms_) + ")",
      {picker.body(), views::note("Сама комбинация настраивается во вкладке «Хоткеи». Если текст "
                                  "уже на целевом языке — переводится на язык системы.")});
}

View TranslationTab::keySection() {
  return views::section(
      "DeepL",
      {views::secureField("API-ключ (хранится " + terms_.term(Term::inKeychain) + ")",
                          bindingTo(weak_from_this(), deepLKey_, &TranslationTab::setDeepLKey)),
       views::note(keyNote(deepLKey_, terms_))});
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
