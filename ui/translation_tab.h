#pragma once

#include <memory>
#include <string>

#include "platform/terms.h"
#include "settings/settings_store.h"
#include "text/keychain_store.h"
#include "text/text_engines.h"
#include "ui/hosted_view.h"

namespace kivra {

/// The engine that translates, the language of the quick translation, and the DeepL key, which
/// goes to the keychain at every change. Where the keychain may ask the user to unlock it, it is
/// read when the tab first comes on the screen, and again each time until there is a key.
class TranslationTab : public HostedView, public std::enable_shared_from_this<TranslationTab> {
 public:
  TranslationTab(std::shared_ptr<SettingsStore> settings, KeychainStore& keychain,
                 TextEngines& engines, const Terms& terms);

  View body() override;
  void onAppear() override;

 private:
  View engineSection();
  View quickTranslationSection() const;
  View keySection();
  void setDeepLKey(const std::string& key);

  std::shared_ptr<SettingsStore> settings_;
  KeychainStore& keychain_;
  TextEngines& engines_;
  const Terms& terms_;
  std::string deepLKey_;
  bool isReading_ = false;
  bool isEdited_ = false;  // the keychain follows the field from now on
  bool isWriting_ = false;
};

}  // namespace kivra
