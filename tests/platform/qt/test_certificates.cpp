#include "test_certificates.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>
#include <stdexcept>

namespace kivra::qt {

TestCertificates::TestCertificates(const std::string& serverName) {
  const QStringList newKey{"-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes"};
  openssl(QStringList{"req", "-x509", "-days", "2", "-subj", "/CN=Kivra test authority", "-keyout",
                      "ca.key", "-out", "ca.pem"} +
          newKey);
  openssl(QStringList{"req", "-subj", "/CN=Kivra test server", "-keyout", "server.key", "-out",
                      "server.csr"} +
          newKey);
  QFile extensions(directory_.filePath("extensions"));
  if (!extensions.open(QFile::WriteOnly)) throw std::runtime_error("no temporary directory");
  extensions.write(QByteArray::fromStdString("subjectAltName=" + serverName));
  extensions.close();
  openssl({"x509", "-req", "-days", "2", "-in", "server.csr", "-CA", "ca.pem", "-CAkey", "ca.key",
           "-CAcreateserial", "-extfile", "extensions", "-out", "server.pem"});
}

std::string TestCertificates::authority() const { return read("ca.pem").toStdString(); }

QSslConfiguration TestCertificates::server() const {
  auto configuration = QSslConfiguration::defaultConfiguration();
  configuration.setLocalCertificate(QSslCertificate(read("server.pem")));
  configuration.setPrivateKey(QSslKey(read("server.key"), QSsl::Ec));
  configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
  return configuration;
}

void TestCertificates::openssl(const QStringList& arguments) const {
  QProcess process;
  process.setWorkingDirectory(directory_.path());
  process.start("openssl", arguments);
  if (!process.waitForFinished() || process.exitCode() != 0) {
    throw std::runtime_error("openssl: " + process.readAllStandardError().toStdString());
  }
}

QByteArray TestCertificates::read(const char* name) const {
  QFile file(directory_.filePath(name));
  return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace kivra::qt
