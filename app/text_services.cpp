#include "app/text_services.h"

#include "app/services.h"
#include "platform/application.h"

namespace kivra {

namespace {

TextAction::Environment actionEnvironment(Services& services) {
  return {services.text.textAccess(),
          services.text.engines(),
          services.undoStack,
          services.platform.alerts,
          services.platform.log,
          services.platform.runLoop,
          services.platform.notifications,
          services.platform.terms,
          [&services] { services.showSettingsWindow(); }};
}

}  // namespace

TextServices::TextServices(Services& services)
    : keychain([&services] {
        auto& platform = services.platform;
        return std::make_shared<KeychainStore>(
            platform.keychain, platform.application.bundleIdentifier().value_or(""));
      }),
      textAccess([&services] {
        auto& platform = services.platform;
        return std::make_shared<TextAccess>(
            TextAccess::Environment{platform.accessibility, platform.pasteboard,
                                    services.keyOutput(), platform.runLoop, platform.clock});
      }),
      deepL([&services, this] {
        return std::make_shared<DeepLEngine>(services.platform.httpClient, keychain());
      }),
      foundationModel([&services] {
        return std::make_shared<FoundationModelEngine>(services.platform.languageModel);
      }),
      appleTranslate([&services] {
        auto& platform = services.platform;
        return std::make_shared<AppleTranslateEngine>(platform.translation, platform.windows,
                                                      platform.application, platform.runLoop);
      }),
      engines([&services, this] {
        return std::make_shared<TextEngines>(TextEngines::Environment{
            services.settings(), keychain(), services.platform.languageModel, appleTranslate(),
            foundationModel(), deepL()});
      }),
      correctAction([&services] {
        return std::make_shared<CorrectAction>(actionEnvironment(services), services.exceptions(),
                                               services.platform.application);
      }),
      translateAction([&services] {
        return std::make_shared<TranslateAction>(actionEnvironment(services),
                                                 services.platform.languageRecognizer,
                                                 services.platform.locale);
      }) {}

}  // namespace kivra
