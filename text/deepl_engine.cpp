#include "text/deepl_engine.h"

#include <chrono>
#include <utility>

#include "support/text.h"
#include "text/deepl_addresses.h"
#include "text/deepl_response.h"
#include "text/text_engine_error.h"

namespace kivra {

namespace {

constexpr std::chrono::seconds timeout(60);

HttpRequest request(const std::string& key, const std::string& path, const json::Value& body) {
  return {
      .method = "POST",
      .url = std::string("https://") + DeepLEngine::hostForKey(key) + path,
      .headers = {{"Authorization", "DeepL-Auth-Key " + key}, {"Content-Type", "application/json"}},
      .body = json::encode(body),
      .timeout = timeout};
}

bool isSuccess(const HttpResponse& response) {
  return response.statusCode && *response.statusCode >= 200 && *response.statusCode <= 299;
}

std::string firstOf(const std::vector<std::string>& texts) {
  if (texts.empty()) throw TextEngineError::emptyResult();
  return texts.front();
}

}  // namespace

const char* DeepLEngine::hostForKey(std::string_view key) {
  return key.ends_with(deepl_addresses::freeKeySuffix) ? deepl_addresses::freeHost
                                                       : deepl_addresses::proHost;
}

Task<std::string> DeepLEngine::translate(std::string text, std::string target,
                                         std::optional<std::string> source) {
  json::Value body{{"text", json::Value::array({text})}, {"target_lang", target}};
  if (source) body["source_lang"] = *source;
  const auto texts = co_await post("/v2/translate", std::move(body), "translations");
  co_return firstOf(texts);
}

Task<std::string> DeepLEngine::correct(std::string text) {
  json::Value body{{"text", json::Value::array({text})}};
  const auto texts = co_await post("/v2/write/rephrase", std::move(body), "improvements");
  co_return firstOf(texts);
}

Task<std::vector<std::string>> DeepLEngine::post(std::string path, json::Value body,
                                                 std::string list) {
  const auto key = keychain_.read(deepLKeyAccount);
  if (!key || key->empty()) throw TextEngineError::notConfigured();
  auto send = [&](Completion<HttpResponse> completion) {
    http_.data(request(*key, path, body), std::move(completion));
  };
  const auto response = co_await completionOf<HttpResponse>(std::move(send));
  if (!isSuccess(response)) {
    throw TextEngineError::http(response.statusCode.value_or(0),
                                text::isValidUtf8(response.body) ? response.body : "");
  }
  co_return deepLTexts(response.body, list.c_str());
}

}  // namespace kivra
