#include "session.h"

#include <utility>

#include "installed_dictionaries.h"

namespace kivra::desk {

Session::Session(embedded::Effects::Sink sink, Typist::AfterKey afterKey)
    : desktop_(std::move(sink), installedDictionaries), typist_(desktop_, std::move(afterKey)) {}

KivraApp& Session::app() {
  if (!app_) {
    app_ = std::make_unique<KivraApp>(desktop_.platform());
    app_->delegate->applicationDidFinishLaunching();
  }
  return *app_;
}

void Session::restart() {
  app_.reset();
  desktop_.time.dropAll();
  app();
}

}  // namespace kivra::desk
