#pragma once

#include <QNetworkProxyFactory>

namespace kivra::qt {

/// The proxy of the user's settings; none for this machine, whatever the settings say: what is sent
/// to a server here must not leave it.
class SystemProxy : public QNetworkProxyFactory {
 public:
  QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override;
};

/// The host is this machine by its very name or number, without asking a name server.
bool isLoopback(const QString& host);

}  // namespace kivra::qt
