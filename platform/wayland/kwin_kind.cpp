#include "platform/wayland/kwin_kind.h"

#include "platform/wayland/client/plasma_window_watch.h"
#include "wlr-data-control-unstable-v1-client-protocol.h"

namespace kivra::wayland {

std::string KwinKind::problem(const Connection& compositor) const {
  if (!compositor.offers(org_kde_plasma_window_management_interface)) {
    return "KWin не говорит Kivra, какое окно впереди: установите её пакетом и войдите в сеанс "
           "заново";
  }
  if (!compositor.offers(zwlr_data_control_manager_v1_interface)) {
    return "KWin не даёт программам буфер обмена";
  }
  if (inputMethod_.isOurs()) return {};
  const auto other = inputMethod_.current();
  return other.empty()
             ? "KWin ещё не знает Kivra: «Запросить» сделает её методом ввода в настройках KWin"
             : "у KWin другой метод ввода (" + other + "): «Запросить» поставит на его место Kivra";
}

std::unique_ptr<WindowWatch> KwinKind::watchWindows(Connection& compositor) const {
  return std::make_unique<PlasmaWindowWatch>(compositor);
}

}  // namespace kivra::wayland
