#include "app/core_controller.h"

namespace kivra {

// The text actions are not built yet: a hotkey that asks for one is consumed and does nothing.
void CoreController::routerDidRequestAction(const HotkeyAction&) {}

}  // namespace kivra
