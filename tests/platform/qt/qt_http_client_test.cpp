#include "platform/qt/qt_http_client.h"

#include <gtest/gtest.h>
#include <openssl/crypto.h>
#include <unistd.h>

#include <cstdlib>

#include "event_loop.h"
#include "scripted_server.h"
#include "test_certificates.h"

namespace kivra::qt {
namespace {

using namespace std::chrono_literals;

class QtHttpClientTest : public testing::Test {
 protected:
  static const TestCertificates& certificates() {
    static const TestCertificates made("DNS:localhost");
    return made;
  }

  static QtHttpClient::Options trusting(const TestCertificates& trusted) {
    return {.certificateAuthorities = trusted.authority()};
  }

  /// Starts the server that gives this answer.
  ScriptedServer& serve(std::optional<std::string> answer) {
    const auto tls = certificates().server();
    server_ = std::make_unique<ScriptedServer>([answer](const auto&) { return answer; }, &tls);
    return *server_;
  }

  HttpRequest request() const {
    return {.method = "POST",
            .url = "https://localhost:" + std::to_string(server_->port()) + "/v2/translate",
            .headers = {{"Authorization", "DeepL-Auth-Key  odd key "},
                        {"Content-Type", "application/json"}},
            .body = R"({"text":["привет"]})"};
  }

  static std::variant<HttpResponse, PlatformError> send(QtHttpClient& client, HttpRequest request) {
    const auto answer = answerOf<HttpResponse>([&](Completion<HttpResponse> completion) {
      client.data(std::move(request), std::move(completion));
    });
    return answer.value_or(PlatformError("the test waited in vain"));
  }

  std::variant<HttpResponse, PlatformError> answerTo(std::optional<std::string> answer) {
    serve(std::move(answer));
    return send(client_, request());
  }

  static std::string failure(const std::variant<HttpResponse, PlatformError>& answer) {
    const auto* error = std::get_if<PlatformError>(&answer);
    return error == nullptr ? "" : error->what();
  }

  QtHttpClient client_{trusting(certificates())};
  std::unique_ptr<ScriptedServer> server_;
};

TEST_F(QtHttpClientTest, SendsAndAnswersWhatItWasGiven) {
  const auto answer = answerTo(httpAnswer(200, R"({"translations":[{"text":"hello"}]})"));
  ASSERT_EQ(failure(answer), "");
  EXPECT_EQ(std::get<HttpResponse>(answer).statusCode, 200);
  EXPECT_EQ(std::get<HttpResponse>(answer).body, R"({"translations":[{"text":"hello"}]})");
  ASSERT_EQ(server_->requests.size(), 1U);
  const auto& sent = server_->requests[0];
  EXPECT_EQ(sent.line, "POST /v2/translate");
  EXPECT_EQ(sent.body, R"({"text":["привет"]})");
  EXPECT_NE(sent.headers.find("Content-Type: application/json\r\n"), std::string::npos);
  EXPECT_NE(sent.headers.find("Authorization: DeepL-Auth-Key  odd key "), std::string::npos)
      << sent.headers;
}

TEST_F(QtHttpClientTest, SendsNoHeaderWithALineBreak) {
  auto& server = serve(httpAnswer(200, "{}"));
  for (const auto* key : {"key\n", "key\r\nHost: elsewhere", "\rkey"}) {
    auto odd = request();
    odd.headers[0].second = key;
    EXPECT_EQ(failure(send(client_, odd)), "A header holds a line break.");
  }
  EXPECT_TRUE(server.requests.empty());
}

TEST_F(QtHttpClientTest, AnswersEveryStatusWithItsBody) {
  for (const int status : {204, 400, 401, 403, 404, 413, 429, 456, 500, 503, 529}) {
    const auto body = status == 204 ? "" : "Wrong endpoint, спасибо";
    const auto answer = answerTo(httpAnswer(status, body));
    ASSERT_EQ(failure(answer), "") << status;
    EXPECT_EQ(std::get<HttpResponse>(answer).statusCode, status);
    EXPECT_EQ(std::get<HttpResponse>(answer).body, body);
  }
}

TEST_F(QtHttpClientTest, LeavesTheBodyAsItCame) {
  const std::string bytes("<html>\0\xff\xfe not JSON", 18);
  EXPECT_EQ(std::get<HttpResponse>(answerTo(httpAnswer(200, bytes))).body, bytes);
  EXPECT_EQ(std::get<HttpResponse>(answerTo(httpAnswer(200, ""))).body, "");
}

TEST_F(QtHttpClientTest, FailsWhenTheAnswerIsCutOff) {
  auto whole = httpAnswer(200, std::string(10000, 'x'));
  EXPECT_NE(failure(answerTo(whole.substr(0, whole.size() - 1))), "");
  whole = httpAnswer(403, std::string(10000, 'x'));
  EXPECT_NE(failure(answerTo(whole.substr(0, whole.size() - 1))), "");
  EXPECT_NE(
      failure(answerTo("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n")), "");
  EXPECT_NE(failure(answerTo("HTTP/1.1 200 OK\r\nContent-Le")), "");
  EXPECT_NE(failure(answerTo("")), "");
}

TEST_F(QtHttpClientTest, FailsWhenWhatAnswersDoesNotSpeakHttp) {
  EXPECT_NE(failure(answerTo("220 mail.example ESMTP\r\n")), "");
}

TEST_F(QtHttpClientTest, FailsWhenTheWholeAnswerTakesTooLong) {
  serve(std::nullopt);
  auto slow = request();
  slow.timeout = 300ms;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(failure(send(client_, slow)), "The request timed out.");
  const auto took = std::chrono::steady_clock::now() - start;
  EXPECT_GE(took, 300ms);
  EXPECT_LT(took, 5s);
}

TEST_F(QtHttpClientTest, TakesAnAnswerOfFiftyMegabytes) {
  const std::string huge(50U << 20U, 'z');
  const auto answer = answerTo(httpAnswer(200, huge));
  ASSERT_EQ(failure(answer), "");
  EXPECT_TRUE(std::get<HttpResponse>(answer).body == huge);
}

TEST_F(QtHttpClientTest, DoesNotFollowRedirects) {
  ScriptedServer elsewhere([](const auto&) { return httpAnswer(200, "stolen"); });
  const auto answer = answerTo(httpAnswer(
      307, "", "Location: http://127.0.0.1:" + std::to_string(elsewhere.port()) + "/\r\n"));
  ASSERT_EQ(failure(answer), "");
  EXPECT_EQ(std::get<HttpResponse>(answer).statusCode, 307);
  EXPECT_TRUE(elsewhere.requests.empty());
}

TEST_F(QtHttpClientTest, TrustsNoOtherAuthority) {
  serve(httpAnswer(200, "hello"));
  QtHttpClient systemTrust;
  EXPECT_NE(failure(send(systemTrust, request())), "");
  const TestCertificates others("DNS:localhost");
  QtHttpClient otherTrust(trusting(others));
  EXPECT_NE(failure(send(otherTrust, request())), "");
  EXPECT_TRUE(server_->requests.empty()) << "the key went to a server that is not trusted";
}

/// Ends the process as the program does, with a status that tells whether the TLS library still
/// works when nothing else is left.
void endAfterARequest() {
  std::atexit([] {
    if (OPENSSL_init_crypto(0, nullptr) == 0) ::_exit(EXIT_FAILURE);
  });
  QtHttpClient client;
  answerOf<HttpResponse>([&](Completion<HttpResponse> completion) {
    client.data({.url = "https://localhost:1/"}, std::move(completion));
  });
  std::exit(EXIT_SUCCESS);
}

// Its threads may still be using it.
TEST(QtHttpClientEndTest, TheTlsLibraryIsNotCleanedUp) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(endAfterARequest(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(QtHttpClientTest, TrustsNoCertificateForAnotherName) {
  const TestCertificates otherName("DNS:example.org");
  const auto tls = otherName.server();
  server_ = std::make_unique<ScriptedServer>([](const auto&) { return httpAnswer(200, ""); }, &tls);
  QtHttpClient client(trusting(otherName));
  EXPECT_NE(failure(send(client, request())), "");
  EXPECT_TRUE(server_->requests.empty());
}

TEST_F(QtHttpClientTest, RefusesWhatIsNoAddressAndWhatIsNotEncrypted) {
  for (const char* url : {"", "deepl", "https://", "ftp://localhost/", "file:///etc/passwd",
                          "http://example.org/", "http://localhost.example.org/", "https://a b/"}) {
    auto wrong = HttpRequest{};
    wrong.url = url;
    EXPECT_EQ(failure(send(client_, wrong)), "The address cannot be used.") << url;
  }
}

TEST_F(QtHttpClientTest, SendsNothingForThisMachineThroughAProxy) {
  ScriptedServer proxy([](const auto&) { return httpAnswer(200, "seen by the proxy"); });
  ScriptedServer local([](const auto&) { return httpAnswer(200, "local"); });
  const auto address = "http://127.0.0.1:" + std::to_string(proxy.port());
  ::setenv("http_proxy", address.c_str(), 1);
  QtHttpClient client;
  const auto answer =
      send(client, {.url = "http://127.0.0.1:" + std::to_string(local.port()) + "/languages"});
  ::unsetenv("http_proxy");
  ASSERT_EQ(failure(answer), "");
  EXPECT_EQ(std::get<HttpResponse>(answer).body, "local");
  EXPECT_TRUE(proxy.requests.empty());
}

TEST_F(QtHttpClientTest, GoesThroughTheProxyOfTheSettings) {
  ScriptedServer proxy([](const auto&) { return httpAnswer(502, ""); });
  const auto address = "http://127.0.0.1:" + std::to_string(proxy.port());
  ::setenv("https_proxy", address.c_str(), 1);
  QtHttpClient client;
  EXPECT_NE(failure(send(client, {.url = "https://kivra.invalid/"})), "");
  ::unsetenv("https_proxy");
  ASSERT_FALSE(proxy.requests.empty());
  EXPECT_EQ(proxy.requests[0].line, "CONNECT kivra.invalid:443");
}

TEST_F(QtHttpClientTest, DropsTheCompletionWhenItEnds) {
  serve(std::nullopt);
  const auto held = std::make_shared<int>();
  bool called = false;
  {
    QtHttpClient ending(trusting(certificates()));
    ending.data(request(), [held, &called](const auto&) { called = true; });
    turnUntil([&] { return !server_->requests.empty(); });
    EXPECT_EQ(held.use_count(), 2);
  }
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_FALSE(called);
}

}  // namespace
}  // namespace kivra::qt
