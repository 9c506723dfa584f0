#include "scripted_server.h"

#include <QSslServer>
#include <QTcpSocket>
#include <stdexcept>
#include <utility>

namespace kivra::qt {

ScriptedServer::ScriptedServer(Answer answer, const QSslConfiguration* tls, std::uint16_t port)
    : answer_(std::move(answer)) {
  if (tls != nullptr) {
    auto encrypted = std::make_unique<QSslServer>();
    encrypted->setSslConfiguration(*tls);
    server_ = std::move(encrypted);
  } else {
    server_ = std::make_unique<QTcpServer>();
  }
  QObject::connect(server_.get(), &QTcpServer::pendingConnectionAvailable, server_.get(), [this] {
    while (auto* const socket = server_->nextPendingConnection()) serve(*socket);
  });
  if (!server_->listen(QHostAddress::LocalHost, port)) throw std::runtime_error("cannot listen");
}

void ScriptedServer::serve(QTcpSocket& socket) {
  const auto received = std::make_shared<QByteArray>();
  const auto read = [this, &socket, received] {
    received->append(socket.readAll());
    answerWhole(socket, *received);
  };
  QObject::connect(&socket, &QTcpSocket::readyRead, server_.get(), read);
  QObject::connect(&socket, &QTcpSocket::disconnected, &socket, &QObject::deleteLater);
  read();  // what came together with the handshake
}

void ScriptedServer::answerWhole(QTcpSocket& socket, QByteArray& received) {
  const auto end = received.indexOf("\r\n\r\n");
  if (end < 0) return;
  const auto head = received.left(end).toStdString();
  const auto lengthAt = received.toLower().indexOf("content-length:");
  const auto length =
      lengthAt < 0 || lengthAt > end
          ? 0
          : received.mid(lengthAt + 15, received.indexOf("\r\n", lengthAt) - lengthAt - 15)
                .trimmed()
                .toInt();
  if (received.size() < end + 4 + length) return;
  const auto firstLine = head.substr(0, head.find("\r\n"));
  requests.push_back({.line = firstLine.substr(0, firstLine.rfind(' ')),
                      .headers = head.substr(firstLine.size()),
                      .body = received.mid(end + 4, length).toStdString()});
  received.clear();
  const auto answer = answer_(requests.back());
  if (!answer) return;
  socket.write(QByteArray::fromStdString(*answer));
  socket.disconnectFromHost();
}

std::string httpAnswer(int status, const std::string& body, const std::string& headers) {
  return "HTTP/1.1 " + std::to_string(status) +
         " Said\r\nConnection: close\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" +
         headers + "\r\n" + body;
}

}  // namespace kivra::qt
