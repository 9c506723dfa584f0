#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

#include "platform/answer_of.h"
#include "platform/http_client.h"

namespace kivra {

/// What every HTTP client does. `Backend` is default-constructible and has
/// - `HttpClient& client()`, and `turnUntil(condition)`, which turns its run loop;
/// - `now()`, the time that it goes by;
/// - `std::string address()` of a server, and how that answers the next request: `answer(status,
///   body)`, or `stayUnanswered()`;
/// - `HttpRequest received()`, what the server got last.
template <class Backend>
class HttpClientContract : public ::testing::Test {
 protected:
  AnswerOf<HttpResponse> send() {
    return answerOf<HttpResponse>(
        [this](const auto& condition) { backend_.turnUntil(condition); },
        [this](auto completion) { backend_.client().data(request_, std::move(completion)); });
  }
  HttpResponse answerTo(int status, const std::string& body) {
    backend_.answer(status, body);
    const auto answer = send();
    EXPECT_EQ(failureOf(answer), "");
    return std::get<HttpResponse>(answer);
  }

  Backend backend_;
  HttpRequest request_{.method = "POST",
                       .url = backend_.address() + "/v2/translate",
                       .headers = {{"Authorization", "DeepL-Auth-Key  odd key "},
                                   {"Content-Type", "application/json"}},
                       .body = R"({"text":["привет"]})"};
};
TYPED_TEST_SUITE_P(HttpClientContract);

TYPED_TEST_P(HttpClientContract, SendsWhatItWasGiven) {
  this->answerTo(200, "{}");
  const auto received = this->backend_.received();
  EXPECT_EQ(received.method, "POST");
  EXPECT_EQ(received.url, this->request_.url);
  for (const auto& header : this->request_.headers) {
    EXPECT_EQ(std::ranges::count(received.headers, header), 1) << header.first;
  }
  EXPECT_EQ(received.body, this->request_.body);
}

TYPED_TEST_P(HttpClientContract, AnswersEveryStatusWithItsBody) {
  for (const int status : {204, 307, 400, 401, 403, 404, 413, 429, 456, 500, 503, 529}) {
    const auto body = status == 204 ? "" : "Wrong endpoint, спасибо";
    const auto response = this->answerTo(status, body);
    EXPECT_EQ(response.statusCode, status);
    EXPECT_EQ(response.body, body) << status;
  }
}

TYPED_TEST_P(HttpClientContract, LeavesTheBodyAsItCame) {
  const std::string bytes("<html>\0\xff\xfe not JSON", 18);
  EXPECT_EQ(this->answerTo(200, bytes).body, bytes);
  EXPECT_EQ(this->answerTo(200, "").body, "");
}

TYPED_TEST_P(HttpClientContract, FailsWhenTheAnswerTakesTooLong) {
  using namespace std::chrono_literals;
  this->backend_.stayUnanswered();
  this->request_.timeout = 300ms;
  const auto start = this->backend_.now();
  EXPECT_EQ(failureOf(this->send()), "The request timed out.");
  EXPECT_GE(this->backend_.now() - start, 300ms);
  EXPECT_LT(this->backend_.now() - start, 10s);
}

REGISTER_TYPED_TEST_SUITE_P(HttpClientContract, SendsWhatItWasGiven, AnswersEveryStatusWithItsBody,
                            LeavesTheBodyAsItCame, FailsWhenTheAnswerTakesTooLong);

}  // namespace kivra
