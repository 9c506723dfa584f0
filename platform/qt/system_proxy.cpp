#include "platform/qt/system_proxy.h"

#include <QHostAddress>

namespace kivra::qt {

QList<QNetworkProxy> SystemProxy::queryProxy(const QNetworkProxyQuery& query) {
  if (isLoopback(query.peerHostName())) return {QNetworkProxy::NoProxy};
  return systemProxyForQuery(query);
}

bool isLoopback(const QString& host) {
  return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

}  // namespace kivra::qt
