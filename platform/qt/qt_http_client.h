#pragma once

#include <QNetworkAccessManager>
#include <QSslConfiguration>
#include <string>

#include "platform/http_client.h"

namespace kivra::qt {

/// HTTP/1.1 by Qt Network. Without TLS only servers of this machine are spoken to. Needs a
/// QCoreApplication and its event loop.
class QtHttpClient : public HttpClient {
 public:
  struct Options {
    /// Certificate authorities (PEM) that are trusted instead of the system's; empty: the system's.
    std::string certificateAuthorities;
  };

  QtHttpClient() : QtHttpClient(Options{}) {}
  explicit QtHttpClient(const Options& options);

  void data(HttpRequest request, Completion<HttpResponse> completion) override;

 private:
  QNetworkRequest networkRequest(const HttpRequest& request) const;

  QSslConfiguration tls_;
  QNetworkAccessManager manager_;
};

}  // namespace kivra::qt
