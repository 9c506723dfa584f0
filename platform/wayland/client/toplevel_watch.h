#pragma once

#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/wayland/client/connection.h"
#include "platform/wayland/client/window_watch.h"
#include "wlr-foreign-toplevel-management-unstable-v1-client-protocol.h"

namespace kivra::wayland {

/// The windows of a compositor with wlroots' protocol.
class ToplevelWatch : public WindowWatch {
 public:
  /// Throws std::runtime_error when the compositor does not tell.
  explicit ToplevelWatch(Connection& connection);

  bool isAnyActive() const { return active_ != nullptr; }
  std::optional<std::string> activeApplication() const override;
  bool takeMove() override { return std::exchange(hasMoved_, false); }
  void activateLast(std::string_view application, wl_seat* seat) const override;

 private:
  struct Toplevel {
    ToplevelWatch* watch = nullptr;
    Owned<zwlr_foreign_toplevel_handle_v1> handle;
    std::string application{};
    bool isActive = false;

    void readApplication(const char* id) { application = id; }
    void readState(wl_array* states);
    void done() { watch->update(); }
    void closed() { watch->remove(this); }
  };

  void add(zwlr_foreign_toplevel_handle_v1* handle);
  void remove(const Toplevel* toplevel);
  void finish();
  void update();

  Owned<zwlr_foreign_toplevel_manager_v1> manager_;
  std::list<Toplevel> toplevels_;  // in the order of their opening
  const Toplevel* active_ = nullptr;
  bool hasMoved_ = false;
};

}  // namespace kivra::wayland
