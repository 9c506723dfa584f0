#include "app/core_controller.h"

namespace kivra {

void CoreController::routerDidRequestAction(const HotkeyAction& action) {
  if (const auto* translation = std::get_if<HotkeyAction::TranslateTo>(&action.kind)) {
    services_.text.translateAction().run(translation->language);
  } else {
    services_.text.correctAction().run();
  }
}

}  // namespace kivra
