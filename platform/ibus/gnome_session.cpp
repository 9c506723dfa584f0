#include "platform/ibus/gnome_session.h"

#include <stdexcept>
#include <utility>

#include "platform/session/diagnosis.h"
#include "platform/session/session_names.h"

namespace kivra::ibus {

std::unique_ptr<wayland::Connection> gnomeShell() try {
  auto compositor = std::make_unique<wayland::Connection>();
  return compositor->serverName() == "gnome-shell" ? std::move(compositor) : nullptr;
} catch (const std::runtime_error&) {
  return nullptr;
}

GnomeSession::GnomeSession(std::unique_ptr<wayland::Connection> shell,
                           std::unique_ptr<Pasteboard> pasteboard, Environment environment)
    : environment_(std::move(environment)),
      shell_(std::move(shell)),
      pasteboard_(std::move(pasteboard)),
      layouts_(*this, [this] { keyboard_.inputSources.invalidate(); }),
      workspace_(windows_, {.readEvents = [this] { readDesktop(); },
                            .ownApplication = session_names::service,
                            .isPasswordFocused = environment_.isPasswordFocused,
                            .open = environment_.open}),
      keyboard_(environment_, layouts_, workspace_),
      shellWatch_(environment_.watchFd(shell_->fd(), [this] { readShell(); })) {
  shell_->roundtrip();  // the keyboard is there
  shell_->roundtrip();  // and has a map
}

bool GnomeSession::connect() {
  if (!desktop_) try {
      desktop_ = std::make_unique<DesktopWatch>(DesktopWatch::program);
      desktop_->waitUntilTold();
      desktopWatch_ = environment_.watchFd(desktop_->fd(), [this] { readDesktop(); });
    } catch (const std::runtime_error& error) {
      environment_.log.log(std::string("Kivra: ") + error.what());
    }
  return problem().empty();
}

std::string GnomeSession::problem() const {
  if (shell_->isGone()) return "GNOME Shell не отвечает";
  if (!desktop_) return "нет сеансовой шины D-Bus";
  if (!desktop_->isTold()) {
    return "расширение GNOME Shell не включено: gnome-extensions enable kivra-input-source@kivra, "
           "затем войдите в сеанс заново";
  }
  return ibusAddress().empty() ? "IBus не работает: установите пакет ibus и войдите заново" : "";
}

void GnomeSession::tell(SessionFacts& facts) {
  facts.server = shell_->serverName();
  facts.inputMethod =
      isGuardRunning() ? SessionFacts::InputMethod::ours : SessionFacts::InputMethod::free;
}

std::optional<std::uint32_t> GnomeSession::Layouts::group() {
  session_.readDesktop();
  if (!session_.desktop_) return std::nullopt;
  const auto group = session_.desktop_->state().group;
  return group == DesktopWatch::noGroup ? std::nullopt : std::optional(group);
}

std::optional<std::string> GnomeSession::Windows::activeApplication() const {
  if (!desktop_ || desktop_->state().window == 0) return std::nullopt;
  return desktop_->state().application;
}

bool GnomeSession::Windows::takeMove() {
  const auto window = desktop_->state().window;
  return std::exchange(window_, window) != window;
}

void GnomeSession::readDesktop() {
  if (!desktop_) return;
  if (!desktop_->dispatch()) {
    end();
    return;
  }
  if (windows_.takeMove()) environment_.activeWindowChanged();
}

void GnomeSession::readShell() {
  const auto isThere = shell_->dispatch();
  shell_->flush();
  if (!isThere) end();
}

void GnomeSession::end() {
  if (!shellWatch_) return;
  shellWatch_.reset();
  desktopWatch_.reset();
  environment_.connectionLost();
}

}  // namespace kivra::ibus
