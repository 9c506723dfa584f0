#include "app/services.h"

#include "app/core_controller.h"
#include "platform/application.h"
#include "platform/clock.h"

namespace kivra {

Services::Services(const Platform& desktop)
    : platform(desktop),
      defaults_(desktop.defaults),
      settings([this] { return std::make_shared<SettingsStore>(defaults_); }),
      pause([this] { return std::make_shared<Pause>(defaults_, settings(), platform.runLoop); }),
      permissions([this] {
        return std::make_shared<Permissions>(platform.privacy, platform.workspace,
                                             platform.runLoop);
      }),
      exceptions([this] { return std::make_shared<ExceptionStore>(defaults_); }),
      replacements([this] { return std::make_shared<ReplacementStore>(defaults_); }),
      keycodeMap([this] { return std::make_shared<KeycodeMap>(platform.inputSources); }),
      wordValidator([this] { return std::make_shared<WordValidator>(platform.spellChecker); }),
      keyOutput([this] {
        return std::make_shared<KeyOutput>(platform.eventPosting, platform.inputSources,
                                           platform.clock);
      }),
      layoutSwitcher([this] {
        return std::make_shared<LayoutSwitcher>(
            LayoutSwitcher::Environment{keycodeMap(), wordValidator(), settings(), replacements(),
                                        exceptions(), undoStack, keyOutput(), platform.workspace});
      }),
      text(*this),
      coreController([this] { return CoreController::create(*this); }) {}

Services::~Services() = default;

}  // namespace kivra
