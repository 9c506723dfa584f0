#include "platform/qt/qt_http_client.h"

#include <gtest/gtest.h>
#include <openssl/crypto.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>

#include "event_loop.h"
#include "platform/http_client_contract.h"
#include "scripted_server.h"
#include "test_certificates.h"

namespace kivra::qt {
namespace {

using namespace std::chrono_literals;

const TestCertificates& certificates() {
  static const TestCertificates made("DNS:localhost");
  return made;
}

QtHttpClient::Options trusting(const TestCertificates& trusted) {
  return {.certificateAuthorities = trusted.authority()};
}

/// A server that its clients trust.
class TrustedServer {
 public:
  HttpClient& client() { return client_; }
  static void turnUntil(const std::function<bool()>& condition) { qt::turnUntil(condition); }
  static auto now() { return std::chrono::steady_clock::now(); }
  std::string address() const { return "https://localhost:" + std::to_string(server_.port()); }
  void answer(int status, const std::string& body) { answer_ = httpAnswer(status, body); }
  void stayUnanswered() { answer_.reset(); }
  HttpRequest received() const {
    const auto& request = server_.requests.back();
    const auto space = request.line.find(' ');
    HttpRequest received{.method = request.line.substr(0, space),
                         .url = address() + request.line.substr(space + 1),
                         .body = request.body};
    std::istringstream lines(request.headers);
    for (std::string line; std::getline(lines, line);) {
      const auto colon = line.find(": ");
      if (colon == std::string::npos) continue;
      received.headers.emplace_back(line.substr(0, colon),
                                    line.substr(colon + 2, line.size() - colon - 3));
    }
    return received;
  }

 private:
  QtHttpClient client_{trusting(certificates())};
  std::optional<std::string> answer_;
  QSslConfiguration tls_ = certificates().server();
  ScriptedServer server_{[this](const auto&) { return answer_; }, &tls_};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, HttpClientContract, TrustedServer);

class QtHttpClientTest : public testing::Test {
 protected:
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

  static AnswerOf<HttpResponse> send(QtHttpClient& client, const HttpRequest& request) {
    return qt::answerOf<HttpResponse>(
        [&](auto completion) { client.data(request, std::move(completion)); });
  }

  AnswerOf<HttpResponse> answerTo(std::optional<std::string> answer) {
    serve(std::move(answer));
    return send(client_, request());
  }

  QtHttpClient client_{trusting(certificates())};
  std::unique_ptr<ScriptedServer> server_;
};

TEST_F(QtHttpClientTest, SendsNoHeaderWithALineBreak) {
  auto& server = serve(httpAnswer(200, "{}"));
  for (const auto* key : {"key\n", "key\r\nHost: elsewhere", "\rkey"}) {
    auto odd = request();
    odd.headers[0].second = key;
    EXPECT_EQ(failureOf(send(client_, odd)), "A header holds a line break.");
  }
  EXPECT_TRUE(server.requests.empty());
}

TEST_F(QtHttpClientTest, FailsWhenTheAnswerIsCutOff) {
  auto whole = httpAnswer(200, std::string(10000, 'x'));
  EXPECT_NE(failureOf(answerTo(whole.substr(0, whole.size() - 1))), "");
  whole = httpAnswer(403, std::string(10000, 'x'));
  EXPECT_NE(failureOf(answerTo(whole.substr(0, whole.size() - 1))), "");
  EXPECT_NE(
      failureOf(answerTo("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n")),
      "");
  EXPECT_NE(failureOf(answerTo("HTTP/1.1 200 OK\r\nContent-Le")), "");
  EXPECT_NE(failureOf(answerTo("")), "");
}

TEST_F(QtHttpClientTest, FailsWhenWhatAnswersDoesNotSpeakHttp) {
  EXPECT_NE(failureOf(answerTo("220 mail.example ESMTP\r\n")), "");
}

TEST_F(QtHttpClientTest, TakesAnAnswerOfFiftyMegabytes) {
  const std::string huge(50U << 20U, 'z');
  const auto answer = answerTo(httpAnswer(200, huge));
  ASSERT_EQ(failureOf(answer), "");
  EXPECT_TRUE(std::get<HttpResponse>(answer).body == huge);
}

TEST_F(QtHttpClientTest, DoesNotFollowRedirects) {
  ScriptedServer elsewhere([](const auto&) { return httpAnswer(200, "stolen"); });
  const auto answer = answerTo(httpAnswer(
      307, "", "Location: http://127.0.0.1:" + std::to_string(elsewhere.port()) + "/\r\n"));
  ASSERT_EQ(failureOf(answer), "");
  EXPECT_EQ(std::get<HttpResponse>(answer).statusCode, 307);
  EXPECT_TRUE(elsewhere.requests.empty());
}

TEST_F(QtHttpClientTest, TrustsNoOtherAuthority) {
  serve(httpAnswer(200, "hello"));
  QtHttpClient systemTrust;
  EXPECT_NE(failureOf(send(systemTrust, request())), "");
  const TestCertificates others("DNS:localhost");
  QtHttpClient otherTrust(trusting(others));
  EXPECT_NE(failureOf(send(otherTrust, request())), "");
  EXPECT_TRUE(server_->requests.empty()) << "the key went to a server that is not trusted";
}

/// Ends the process as the program does, with a status that tells whether the TLS library still
/// works when nothing else is left.
void endAfterARequest() {
  std::atexit([] {
    if (OPENSSL_init_crypto(0, nullptr) == 0) ::_exit(EXIT_FAILURE);
  });
  QtHttpClient client;
  qt::answerOf<HttpResponse>([&](auto completion) {
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
  EXPECT_NE(failureOf(send(client, request())), "");
  EXPECT_TRUE(server_->requests.empty());
}

TEST_F(QtHttpClientTest, RefusesWhatIsNoAddressAndWhatIsNotEncrypted) {
  for (const char* url : {"", "deepl", "https://", "ftp://localhost/", "file:///etc/passwd",
                          "http://example.org/", "http://localhost.example.org/", "https://a b/"}) {
    auto wrong = HttpRequest{};
    wrong.url = url;
    EXPECT_EQ(failureOf(send(client_, wrong)), "The address cannot be used.") << url;
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
  ASSERT_EQ(failureOf(answer), "");
  EXPECT_EQ(std::get<HttpResponse>(answer).body, "local");
  EXPECT_TRUE(proxy.requests.empty());
}

TEST_F(QtHttpClientTest, GoesThroughTheProxyOfTheSettings) {
  ScriptedServer proxy([](const auto&) { return httpAnswer(502, ""); });
  const auto address = "http://127.0.0.1:" + std::to_string(proxy.port());
  ::setenv("https_proxy", address.c_str(), 1);
  QtHttpClient client;
  EXPECT_NE(failureOf(send(client, {.url = "https://kivra.invalid/"})), "");
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
