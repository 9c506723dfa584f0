#include "platform/engines/offline_translation_session.h"

#include <utility>

namespace kivra {

namespace {

constexpr const char* noWay = "Перевод для этой пары языков недоступен.";
constexpr const char* programFailed = "Apertium не перевёл текст.";
constexpr const char* nothingCame = "Переводчик вернул пустой ответ.";

bool isBlank(const std::string& text) {
  return text.find_first_not_of(" \t\r\n\f\v") == std::string::npos;
}

/// An empty translation of a text that is not empty is none.
std::variant<std::string, PlatformError> checked(
    const std::string& text, std::variant<std::string, PlatformError> translation) {
  const auto* translated = std::get_if<std::string>(&translation);
  if (translated != nullptr && isBlank(*translated) && !isBlank(text)) {
    return PlatformError(nothingCame);
  }
  return translation;
}

}  // namespace

OfflineTranslationSession::~OfflineTranslationSession() { stop_.request_stop(); }

void OfflineTranslationSession::prepareTranslation(std::string text,
                                                   Completion<std::monostate> completion) {
  const auto services = services_.lock();
  if (!services) return;
  services->findRoute(languages_, text,
                      [weak = weak_from_this(), completion](const TranslationRoute& route) {
                        const auto self = weak.lock();
                        if (!self) return;
                        if (const auto* missing = std::get_if<ByMissingPackage>(&route)) {
                          self->install(missing->package, completion);
                        } else if (std::holds_alternative<std::monostate>(route)) {
                          completion(PlatformError(noWay));
                        } else {
                          completion(std::monostate());
                        }
                      });
}

void OfflineTranslationSession::install(const std::string& package,
                                        Completion<std::monostate> completion) {
  const auto services = services_.lock();
  if (!services) return;
  stop_ = services->install(
      package, [weak = weak_from_this(), called = std::move(completion)](const auto& failure) {
        if (weak.expired()) return;
        if (failure) {
          called(PlatformError(*failure));
        } else {
          called(std::monostate());
        }
      });
}

void OfflineTranslationSession::translate(std::string text, Completion<std::string> completion) {
  const auto services = services_.lock();
  if (!services) return;
  services->findRoute(languages_, text,
                      [weak = weak_from_this(), text, completion](const TranslationRoute& route) {
                        const auto self = weak.lock();
                        const auto lockedServices = self ? self->services_.lock() : nullptr;
                        if (!lockedServices) return;
                        if (const auto* byMode = std::get_if<ByApertium>(&route)) {
                          self->translateByApertium(text, byMode->mode, completion);
                        } else if (const auto* byServer = std::get_if<ByLibreTranslate>(&route)) {
                          lockedServices->libreTranslate().translate(
                              text, byServer->pair, [weak, text, completion](auto translation) {
                                if (!weak.expired())
                                  completion(checked(text, std::move(translation)));
                              });
                        } else {
                          completion(PlatformError(noWay));
                        }
                      });
}

void OfflineTranslationSession::translateByApertium(const std::string& text,
                                                    const std::string& mode,
                                                    Completion<std::string> completion) {
  stop_ = services_.lock()->translateByApertium(
      text, mode,
      [weak = weak_from_this(), text, completion = std::move(completion)](auto translation) {
        if (weak.expired()) return;
        if (translation) {
          completion(checked(text, std::move(*translation)));
        } else {
          completion(PlatformError(programFailed));
        }
      });
}

}  // namespace kivra
