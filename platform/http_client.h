#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/completion.h"

namespace kivra {

/// RFC 9110, 15.3.1.
inline constexpr int httpOk = 200;

struct HttpRequest {
  std::string method = "GET";
  std::string url;
  std::vector<std::pair<std::string, std::string>> headers{};
  std::string body{};
  std::chrono::milliseconds timeout{60000};  ///< for the whole exchange, then it fails
};

struct HttpResponse {
  std::optional<int> statusCode;  ///< nothing when what answered does not speak HTTP
  std::string body;               ///< the bytes as they came, content coding undone
};

/// HTTP over verified TLS, through the proxy that the user's settings name.
class HttpClient {
 public:
  virtual ~HttpClient() = default;

  /// Sends the request and answers whatever comes back, whatever its status. A redirect is answered
  /// as it is rather than followed: the headers are for the host of the request only. Fails when no
  /// whole answer comes in time, when the certificate is not trusted, and when it is not an
  /// address.
  virtual void data(HttpRequest request, Completion<HttpResponse> completion) = 0;
};

}  // namespace kivra
