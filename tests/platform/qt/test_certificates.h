#pragma once

#include <QSslConfiguration>
#include <QTemporaryDir>
#include <string>

namespace kivra::qt {

/// A certificate authority that lives as long as the object, and a server's certificate from it.
/// Throws std::runtime_error without openssl.
class TestCertificates {
 public:
  /// `serverName` is what the server's certificate is made out to ("DNS:localhost").
  explicit TestCertificates(const std::string& serverName);

  std::string authority() const;
  QSslConfiguration server() const;

 private:
  void openssl(const QStringList& arguments) const;
  QByteArray read(const char* name) const;

  QTemporaryDir directory_;
};

}  // namespace kivra::qt
