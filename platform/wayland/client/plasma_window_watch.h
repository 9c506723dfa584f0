#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "plasma-window-management-client-protocol.h"
#include "platform/wayland/client/connection.h"
#include "platform/wayland/client/window_watch.h"

namespace kivra::wayland {

/// The windows of KWin, which tells of them to programs whose desktop entry asks for it; to others
/// none is active.
class PlasmaWindowWatch : public WindowWatch {
 public:
  explicit PlasmaWindowWatch(Connection& connection);

  std::optional<std::string> activeApplication() const override;
  bool takeMove() override { return std::exchange(hasMoved_, false); }
  void activateLast(std::string_view application, wl_seat* seat) const override;

 private:
  struct Window {
    PlasmaWindowWatch* watch = nullptr;
    Owned<org_kde_plasma_window> handle;
    std::string application{};
    std::uint32_t process = 0;
    bool isActive = false;

    void readApplication(const char* id) { application = id; }
    void readProcess(std::uint32_t pid) { process = pid; }
    void readState(std::uint32_t flags);
    void unmapped() { watch->remove(this); }
  };

  void add(std::uint32_t id);
  void remove(const Window* window);
  void update();

  Owned<org_kde_plasma_window_management> manager_;
  std::list<Window> windows_;  // in the order of their opening
  const Window* active_ = nullptr;
  bool hasMoved_ = false;
};

}  // namespace kivra::wayland
