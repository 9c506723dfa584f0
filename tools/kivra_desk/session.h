#pragma once

#include <memory>
#include <optional>

#include "app/kivra_app.h"
#include "platform/embedded/embedded_desktop.h"
#include "typist.h"

namespace kivra::desk {

/// The embedded desktop with the program on it, which is launched when asked for and can be ended
/// and launched again.
class Session {
 public:
  Session(embedded::Effects::Sink sink, Typist::AfterKey afterKey);

  embedded::EmbeddedDesktop& desktop() { return desktop_; }
  Typist& typist() { return typist_; }

  /// The running program, launched at the first call.
  KivraApp& app();

  bool isLaunched() const { return app_ != nullptr; }

  /// Ends the program and launches it again on the same desktop.
  void restart();

  bool isTerminated() const { return desktop_.session.isTerminated(); }

 private:
  embedded::EmbeddedDesktop desktop_;
  Typist typist_;
  std::unique_ptr<KivraApp> app_;
};

}  // namespace kivra::desk
