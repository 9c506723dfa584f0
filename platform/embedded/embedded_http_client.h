#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <string>

#include "platform/embedded/effects.h"
#include "platform/embedded/virtual_time.h"
#include "platform/http_client.h"

namespace kivra::embedded {

/// A network that answers from a queue. A request that finds the queue empty fails.
class EmbeddedHttpClient : public HttpClient {
 public:
  struct Reply {
    HttpResponse response;
    std::optional<std::string> failure;  ///< in place of the response
    std::chrono::microseconds delay{0};
  };

  EmbeddedHttpClient(Effects& effects, VirtualTime& time) : effects_(effects), time_(time) {}

  void queueReply(Reply reply) { replies_.push_back(std::move(reply)); }

  void data(HttpRequest request, Completion<HttpResponse> completion) override;

 private:
  Reply nextReply(std::chrono::milliseconds timeout);

  Effects& effects_;
  VirtualTime& time_;
  std::deque<Reply> replies_;
};

}  // namespace kivra::embedded
