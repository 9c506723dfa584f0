#include <gtest/gtest.h>

#include <string>

#include "platform/embedded/embedded_keychain.h"
#include "support/task.h"
#include "text/deepl_engine.h"
#include "text/deepl_response.h"
#include "text/keychain_store.h"
#include "text/text_engine_error.h"
#include "text/translation_language.h"
#include "text_test_support.h"

namespace kivra {
namespace {

constexpr const char* service = "org.example.Kivra";

TEST(TranslationLanguage, FollowsTheListsCodes) {
  EXPECT_EQ(translationLanguage("RU"), "ru");
  EXPECT_EQ(translationLanguage("EN-US"), "en-US");
  EXPECT_EQ(translationLanguage("pt-pt"), "pt-PT");
  EXPECT_EQ(translationLanguage("ZH"), "zh-Hans");
  EXPECT_EQ(translationLanguage("zh-TW"), "zh-Hans");
  EXPECT_EQ(translationLanguage("-EN--us-x-"), "en-US");
  EXPECT_EQ(translationLanguage("-"), "-");
  EXPECT_EQ(translationLanguage(""), "");
}

TEST(DeepLResponse, GivesTheTextsAndNothingElse) {
  using Texts = std::vector<std::string>;
  EXPECT_EQ(
      deepLTexts(R"({"translations":[{"text":"a","x":1},{"text":""}],"y":[]})", "translations"),
      (Texts{"a", ""}));
  EXPECT_EQ(deepLTexts(R"({"improvements":[]})", "improvements"), Texts{});
  for (const auto* body :
       {"", "null", "[]", "{}", R"({"translations":null})", R"({"translations":{}})",
        R"({"translations":["a"]})", R"({"translations":[{"text":"a"},{}]})",
        R"({"translations":[{"text":1}]})", R"({"translations":[{"text":"a"}])", "\xFF"}) {
    EXPECT_THROW(deepLTexts(body, "translations"), PlatformError) << body;
  }
}

TEST(KeychainStore, KeepsTextsAndForgetsEmptyOnes) {
  embedded::EmbeddedKeychain keychain;
  KeychainStore store(keychain, service);
  EXPECT_EQ(store.read(deepLKeyAccount), std::nullopt);
  store.write(" first ", deepLKeyAccount);
  store.write(" second ", deepLKeyAccount);
  EXPECT_EQ(store.read(deepLKeyAccount), " second ");
  EXPECT_EQ(store.read("other"), std::nullopt);
  store.write("", deepLKeyAccount);
  EXPECT_EQ(keychain.itemCopyMatching({service, deepLKeyAccount}), std::nullopt);
  store.write(std::nullopt, deepLKeyAccount);
  keychain.itemAdd({service, deepLKeyAccount}, "\xFF\xFE");
  EXPECT_EQ(store.read(deepLKeyAccount), std::nullopt);
}

/// Refuses to change anything.
class LockedKeychain : public embedded::EmbeddedKeychain {
 public:
  KeychainStatus itemUpdate(const KeychainItem&, std::string_view) override {
    return KeychainStatus::notAvailable;
  }
};

TEST(KeychainStore, AddsOnlyWhatIsNotThere) {
  LockedKeychain keychain;
  KeychainStore store(keychain, service);
  store.write("key", deepLKeyAccount);
  EXPECT_EQ(store.read(deepLKeyAccount), std::nullopt);
}

/// Answers one request as told.
class OneReply : public HttpClient {
 public:
  explicit OneReply(HttpResponse response) : response_(std::move(response)) {}

  void data(HttpRequest request, Completion<HttpResponse> completion) override {
    sent.push_back(std::move(request));
    completion(response_);
  }

  std::vector<HttpRequest> sent;

 private:
  HttpResponse response_;
};

std::string failureOf(const HttpResponse& response) {
  embedded::EmbeddedKeychain keychain;
  KeychainStore store(keychain, service);
  store.write("key", deepLKeyAccount);
  OneReply http(response);
  DeepLEngine engine(http, store);
  return test::outcome(engine.correct("текст")).failure;
}

TEST(DeepLEngine, ReportsWhatIsNoSuccess) {
  EXPECT_EQ(failureOf({.statusCode = std::nullopt, .body = "ICY"}), "HTTP 0: ICY");
  EXPECT_EQ(failureOf({.statusCode = 199, .body = "x"}), "HTTP 199: x");
  EXPECT_EQ(failureOf({.statusCode = 300, .body = ""}), "HTTP 300: ");
  EXPECT_EQ(failureOf({.statusCode = 500, .body = "a\xFF"}), "HTTP 500: ");
  EXPECT_EQ(failureOf({.statusCode = 299, .body = R"({"improvements":[{"text":"t"}]})"}), "");
}

TEST(DeepLEngine, SendsTheSourceWhenThereIsOne) {
  embedded::EmbeddedKeychain keychain;
  KeychainStore store(keychain, service);
  store.write("key", deepLKeyAccount);
  OneReply http({.statusCode = 200, .body = R"({"translations":[{"text":"Hi"},{"text":"Ho"}]})"});
  DeepLEngine engine(http, store);
  EXPECT_EQ(test::outcome(engine.translate("Привет", "EN-US", "RU")).result, "Hi");
  ASSERT_EQ(http.sent.size(), 1U);
  EXPECT_EQ(json::parse(http.sent[0].body)->at("source_lang"), "RU");
  EXPECT_EQ(http.sent[0].timeout, std::chrono::seconds(60));
}

TEST(DeepLEngine, TellsTheHostFromTheKey) {
  EXPECT_STREQ(DeepLEngine::hostForKey("a:fx"), "api-free.deepl.com");
  EXPECT_STREQ(DeepLEngine::hostForKey("a:FX"), "api.deepl.com");
  EXPECT_STREQ(DeepLEngine::hostForKey("a:fx "), "api.deepl.com");
  EXPECT_STREQ(DeepLEngine::hostForKey("fx"), "api.deepl.com");
}

}  // namespace
}  // namespace kivra
