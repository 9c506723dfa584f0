#include "platform/engines/translation_services.h"

#include <utility>

#include "platform/engines/language_code.h"
#include "platform/engines/package_service.h"

namespace kivra {

namespace {

/// Enough to tell the language by, cut between characters.
std::string_view beginning(std::string_view text) {
  std::size_t end = 2000;
  if (text.size() <= end) return text;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return text.substr(0, end);
}

}  // namespace

TranslationServices::TranslationServices(HttpClient& http, LanguageRecognizer& recognizer,
                                         CallOnMainThread callOnMainThread, const Options& options)
    : recognizer_(recognizer),
      pairIsMissing_(options.pairIsMissing),
      apertium_(options.programs),
      libreTranslate_(http, options.libreTranslatePort, options.libreTranslateWait),
      worker_(callOnMainThread),
      installer_(std::move(callOnMainThread)) {}

void TranslationServices::findRoute(TranslationLanguages languages, const std::string& text,
                                    std::function<void(TranslationRoute)> done) {
  if (!languages.source) languages.source = recognizer_.dominantLanguage(beginning(text));
  const auto askApertium = [weak = weak_from_this(), languages, done] {
    const auto self = weak.lock();
    if (!self) return;
    const auto isPair =
        languages.source && baseLanguage(*languages.source) != baseLanguage(languages.target);
    auto find = [apertium = self->apertium_, languages,
                 isPair](const std::stop_token& stop) -> TranslationRoute {
      if (!isPair) return {};
      const auto& source = languages.source;
      if (auto mode = apertium.mode(*source, languages.target, stop)) return ByApertium{*mode};
      const auto package = apertium.missingPackage(*source, languages.target, stop);
      return package ? TranslationRoute(ByMissingPackage{*package}) : TranslationRoute();
    };
    auto tell = [missing = self->pairIsMissing_, done, languages,
                 isPair](const TranslationRoute& route) {
      if (isPair && std::holds_alternative<std::monostate>(route)) missing(languages);
      done(route);
    };
    self->worker_.run<TranslationRoute>(std::move(find), std::move(tell));
  };
  libreTranslate_.pair(languages, [askApertium, done = std::move(done)](auto pair) {
    if (pair && pair->source != pair->target) {
      done(ByLibreTranslate{std::move(*pair)});
    } else {
      askApertium();
    }
  });
}

std::stop_source TranslationServices::translateByApertium(
    const std::string& text, const std::string& mode,
    std::function<void(std::optional<std::string>)> done) {
  return worker_.run<std::optional<std::string>>(
      [apertium = apertium_, text, mode](const std::stop_token& stop) {
        return apertium.translate(text, mode, stop);
      },
      std::move(done));
}

std::stop_source TranslationServices::install(
    const std::string& package, std::function<void(std::optional<std::string>)> done) {
  return installer_.run<std::optional<std::string>>(
      [package](const std::stop_token& stop) { return installPackage(package, stop); },
      std::move(done));
}

}  // namespace kivra
