#include "platform/embedded/embedded_http_client.h"

#include <utility>

namespace kivra::embedded {

namespace {

Json describe(const HttpRequest& request) {
  auto headers = Json::object();
  for (const auto& [name, value] : request.headers) headers[name] = value;
  auto body = Json::parse(request.body, nullptr, /*allow_exceptions=*/false);
  return Json{{"request",
               {{"method", request.method},
                {"url", request.url},
                {"headers", headers},
                {"body", body.is_discarded() ? Json(request.body) : std::move(body)}}}};
}

}  // namespace

void EmbeddedHttpClient::data(HttpRequest request, Completion<HttpResponse> completion) {
  effects_.report([&] { return describe(request); });
  auto reply = nextReply(request.timeout);
  const auto delay = reply.delay;
  time_.asyncAfter(delay, [reply = std::move(reply), completion = std::move(completion)] {
    if (reply.failure) {
      completion(PlatformError(*reply.failure));
    } else {
      completion(reply.response);
    }
  });
}

EmbeddedHttpClient::Reply EmbeddedHttpClient::nextReply(std::chrono::milliseconds timeout) {
  if (replies_.empty()) return {.response = {}, .failure = "no reply"};
  auto reply = std::move(replies_.front());
  replies_.pop_front();
  if (reply.delay > timeout)
    return {.response = {}, .failure = "The request timed out.", .delay = timeout};
  return reply;
}

}  // namespace kivra::embedded
