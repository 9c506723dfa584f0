#include "platform/engines/libre_translate.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "platform/engines/language_code.h"

namespace kivra {

namespace {

using Json = nlohmann::json;

Json parsed(const HttpResponse& response) { return Json::parse(response.body, nullptr, false); }

/// The code in the list that stands for the language: its very identifier, else the bare language.
std::optional<std::string> codeOf(const std::string& identifier, const Json& codes) {
  std::optional<std::string> bare;
  for (const auto& code : codes) {
    if (!code.is_string()) continue;
    const auto& text = code.get_ref<const std::string&>();
    if (text == identifier) return text;
    if (text == baseLanguage(identifier)) bare = text;
  }
  return bare;
}

std::optional<TranslationLanguages> pairIn(const Json& languages,
                                           const TranslationLanguages& wanted) {
  if (!languages.is_array()) return std::nullopt;
  auto sources = Json::array();
  for (const auto& language : languages) {
    if (language.is_object()) sources.push_back(language.value("code", Json()));
  }
  const auto source = wanted.source ? codeOf(*wanted.source, sources) : std::nullopt;
  if (wanted.source && !source) return std::nullopt;
  for (const auto& language : languages) {
    if (!language.is_object()) continue;
    if (source && language.value("code", Json()) != *source) continue;
    // Servers of before 2023 list no targets: each language goes to each.
    const auto target = codeOf(wanted.target, language.value("targets", sources));
    if (target) return TranslationLanguages{source.value_or("auto"), *target};
  }
  return std::nullopt;
}

std::variant<std::string, PlatformError> translationIn(
    const std::variant<HttpResponse, PlatformError>& answer) {
  if (const auto* error = std::get_if<PlatformError>(&answer)) return *error;
  const auto& response = std::get<HttpResponse>(answer);
  if (response.statusCode != httpOk) {
    return PlatformError("LibreTranslate: HTTP " + std::to_string(response.statusCode.value_or(0)));
  }
  const auto body = parsed(response);
  if (!body.is_object() || !body.contains("translatedText") ||
      !body["translatedText"].is_string()) {
    return PlatformError("LibreTranslate: ответ непонятен.");
  }
  return body["translatedText"].get<std::string>();
}

}  // namespace

LibreTranslate::LibreTranslate(HttpClient& http, std::uint16_t port, std::chrono::milliseconds wait)
    : http_(http), address_("http://127.0.0.1:" + std::to_string(port)), wait_(wait) {}

void LibreTranslate::pair(const TranslationLanguages& languages,
                          std::function<void(std::optional<TranslationLanguages>)> done) {
  http_.data({.url = address_ + "/languages", .timeout = wait_},
             [languages, called = std::move(done)](const auto& answer) {
               const auto* response = std::get_if<HttpResponse>(&answer);
               if (response == nullptr || response->statusCode != httpOk) {
                 called(std::nullopt);
               } else {
                 called(pairIn(parsed(*response), languages));
               }
             });
}

void LibreTranslate::translate(const std::string& text, const TranslationLanguages& pair,
                               Completion<std::string> completion) {
  const Json body = {{"q", text},
                     {"source", pair.source.value_or("auto")},
                     {"target", pair.target},
                     {"format", "text"}};
  http_.data(
      {.method = "POST",
       .url = address_ + "/translate",
       .headers = {{"Content-Type", "application/json"}},
       .body = body.dump(-1, ' ', false, Json::error_handler_t::replace)},
      [called = std::move(completion)](const auto& answer) { called(translationIn(answer)); });
}

}  // namespace kivra
