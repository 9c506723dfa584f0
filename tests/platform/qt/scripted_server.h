#pragma once

#include <QSslConfiguration>
#include <QTcpServer>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kivra::qt {

/// A server of this machine that keeps what it was asked and says what the test tells it to.
class ScriptedServer {
 public:
  struct Request {
    std::string line;  ///< "POST /translate"
    std::string headers;
    std::string body;
  };
  /// The bytes of the answer, after which the connection is closed; nothing: no answer at all.
  using Answer = std::function<std::optional<std::string>(const Request&)>;

  /// Without a configuration it speaks plain HTTP. Port 0: a free one.
  explicit ScriptedServer(Answer answer, const QSslConfiguration* tls = nullptr,
                          std::uint16_t port = 0);

  std::uint16_t port() const { return server_->serverPort(); }
  std::vector<Request> requests;

 private:
  void serve(QTcpSocket& socket);
  void answerWhole(QTcpSocket& socket, QByteArray& received);

  Answer answer_;
  std::unique_ptr<QTcpServer> server_;
};

/// A whole answer with this status and body.
std::string httpAnswer(int status, const std::string& body, const std::string& headers = "");

}  // namespace kivra::qt
