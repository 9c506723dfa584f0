#include "platform/qt/qt_http_client.h"

#include <openssl/crypto.h>

#include <QNetworkReply>
#include <QTimer>
#include <algorithm>
#include <memory>
#include <utility>

#include "platform/qt/system_proxy.h"

namespace kivra::qt {

namespace {

using Outcome = std::variant<HttpResponse, PlatformError>;

constexpr const char* timedOut = "The request timed out.";
constexpr const char* notAnAddress = "The address cannot be used.";
constexpr const char* notAHeader = "A header holds a line break.";

/// A request whose headers hold a key goes out encrypted or not at all.
bool isAllowed(const QUrl& url) {
  if (!url.isValid() || url.host().isEmpty()) return false;
  return url.scheme() == QLatin1String("https") ||
         (url.scheme() == QLatin1String("http") && isLoopback(url.host()));
}

/// A line break in a value would end the header and begin another.
bool hasLineBreak(const HttpRequest& request) {
  return std::ranges::any_of(request.headers, [](const auto& header) {
    return header.second.find_first_of("\r\n") != std::string::npos;
  });
}

/// Qt counts statuses from 400 on as errors, with numbers of their own; there the answer is whole.
bool isWhole(QNetworkReply::NetworkError error) {
  return error == QNetworkReply::NoError || error == QNetworkReply::ProtocolInvalidOperationError ||
         (error >= QNetworkReply::ContentAccessDenied &&
          error <= QNetworkReply::UnknownContentError) ||
         (error >= QNetworkReply::InternalServerError &&
          error <= QNetworkReply::UnknownServerError);
}

Outcome outcomeOf(QNetworkReply& reply, bool ranOut) {
  if (ranOut) return PlatformError(timedOut);
  const auto status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
  if (!isWhole(reply.error()) || !status.isValid()) {
    return PlatformError(reply.errorString().toStdString());
  }
  return HttpResponse{.statusCode = status.toInt(), .body = reply.readAll().toStdString()};
}

/// A thread of the network may outlive `main` and free what the TLS library keeps for it while the
/// library does the same in `exit`: it is told not to, before anybody uses it.
QSslConfiguration tlsConfiguration() {
  OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
  return QSslConfiguration::defaultConfiguration();
}

}  // namespace

QtHttpClient::QtHttpClient(const Options& options) : tls_(tlsConfiguration()) {
  manager_.setProxyFactory(new SystemProxy);
  if (options.certificateAuthorities.empty()) return;
  tls_.setCaCertificates(
      QSslCertificate::fromData(QByteArray::fromStdString(options.certificateAuthorities)));
}

void QtHttpClient::data(HttpRequest request, Completion<HttpResponse> completion) {
  const auto outgoing = networkRequest(request);
  const auto* const problem = !isAllowed(outgoing.url()) ? notAnAddress
                              : hasLineBreak(request)    ? notAHeader
                                                         : nullptr;
  if (problem != nullptr) {
    QTimer::singleShot(0, &manager_, [called = std::move(completion), problem] {
      called(PlatformError(problem));
    });
    return;
  }
  // Requests of the manager, and with them the completions, go when it goes.
  auto* const reply = manager_.sendCustomRequest(
      outgoing, QByteArray::fromStdString(request.method), QByteArray::fromStdString(request.body));
  auto* const deadline = new QTimer(reply);
  const auto ranOut = std::make_shared<bool>(false);
  deadline->setSingleShot(true);
  deadline->setTimerType(Qt::PreciseTimer);
  QObject::connect(deadline, &QTimer::timeout, reply, [reply, ranOut] {
    *ranOut = true;
    reply->abort();
  });
  QObject::connect(reply, &QNetworkReply::finished, reply,
                   [reply, ranOut, called = std::move(completion)] {
                     reply->deleteLater();
                     called(outcomeOf(*reply, *ranOut));
                   });
  deadline->start(request.timeout);
}

QNetworkRequest QtHttpClient::networkRequest(const HttpRequest& request) const {
  QNetworkRequest result(QUrl(QString::fromStdString(request.url), QUrl::StrictMode));
  for (const auto& [name, value] : request.headers) {
    result.setRawHeader(QByteArray::fromStdString(name), QByteArray::fromStdString(value));
  }
  result.setSslConfiguration(tls_);
  result.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                      QNetworkRequest::ManualRedirectPolicy);
  result.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
  result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
  result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
  result.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
  // No name and version of the library for every server to see.
  if (!result.hasRawHeader("User-Agent")) result.setRawHeader("User-Agent", "Kivra");
  return result;
}

}  // namespace kivra::qt
