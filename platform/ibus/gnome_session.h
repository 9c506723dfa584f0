#pragma once

#include <memory>
#include <string>

#include "platform/guard/guarded_keyboard.h"
#include "platform/guard/keyboard_session.h"
#include "platform/ibus/client/desktop_watch.h"
#include "platform/wayland/client/connection.h"
#include "platform/wayland/client/window_watch.h"
#include "platform/wayland/seat_keymap.h"
#include "platform/wayland/wayland_workspace.h"

namespace kivra::ibus {

/// The compositor of the environment, if it is GNOME Shell; else null.
std::unique_ptr<wayland::Connection> gnomeShell();

/// A session of GNOME on Wayland. What the shell tells nobody, Kivra's extension tells.
class GnomeSession : public guard::KeyboardSession {
 public:
  /// The pasteboard is that of XWayland: the shell shares its clipboard with it.
  GnomeSession(std::unique_ptr<wayland::Connection> shell, std::unique_ptr<Pasteboard> pasteboard,
               Environment environment);

  EventTaps& eventTaps() override { return keyboard_.eventTaps; }
  EventPosting& eventPosting() override { return keyboard_.eventPosting; }
  InputSources& inputSources() override { return keyboard_.inputSources; }
  Workspace& workspace() override { return workspace_; }
  Pasteboard& pasteboard() override { return *pasteboard_; }

  bool connect() override;
  std::string problem() const override;
  bool isGuardRunning() const override { return keyboard_.isGuardRunning(); }
  bool isOwnWindowInFront() override { return workspace_.isOwnWindowInFront(); }
  /// The shell lets no program do that.
  void activateWindow(std::uint32_t /*window*/) override {}
  /// There is nothing that an application would answer to.
  std::function<bool()> pingActiveWindow() override {
    return [] { return false; };
  }
  void tell(SessionFacts& facts) override;
  std::optional<SystemTray> systemTray() override { return std::nullopt; }

 private:
  /// The layouts of the shell's map, and the one in effect.
  class Layouts : public wayland::SeatKeymap {
   public:
    Layouts(GnomeSession& session, std::function<void()> changed)
        : SeatKeymap(*session.shell_, std::move(changed)), session_(session) {}
    std::optional<std::uint32_t> group() override;

   private:
    GnomeSession& session_;
  };

  /// The window in front, as the extension tells.
  class Windows : public wayland::WindowWatch {
   public:
    explicit Windows(const std::unique_ptr<DesktopWatch>& desktop) : desktop_(desktop) {}
    std::optional<std::string> activeApplication() const override;
    bool takeMove() override;
    /// The shell lets no program do that.
    void activateLast(std::string_view /*application*/, wl_seat* /*seat*/) const override {}

   private:
    const std::unique_ptr<DesktopWatch>& desktop_;
    std::uint32_t window_ = 0;
  };

  void readDesktop();
  void readShell();
  void end();

  Environment environment_;
  std::unique_ptr<wayland::Connection> shell_;
  std::unique_ptr<DesktopWatch> desktop_;  // as soon as there is a session bus
  std::unique_ptr<Pasteboard> pasteboard_;
  Layouts layouts_;
  Windows windows_{desktop_};
  wayland::WaylandWorkspace workspace_;
  guard::GuardedKeyboard keyboard_;
  std::shared_ptr<void> shellWatch_;
  std::shared_ptr<void> desktopWatch_;
};

}  // namespace kivra::ibus
