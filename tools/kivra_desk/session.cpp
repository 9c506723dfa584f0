#include "session.h"

#include <utility>

#include "installed_dictionaries.h"
#include "platform/language/cld2_language_recognizer.h"

namespace kivra::desk {

namespace {

LanguageRecognizer* recognizer() {
  static Cld2LanguageRecognizer cld2;
  return &cld2;
}

}  // namespace

Session::Session(embedded::Effects::Sink sink, Typist::AfterKey afterKey)
    : desktop_(std::move(sink), installedDictionaries, recognizer()),
      typist_(desktop_, std::move(afterKey)) {}

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
