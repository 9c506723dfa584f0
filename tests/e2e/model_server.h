#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

class QThread;

namespace kivra::e2e {

/// A server with the OpenAI chat API, on a thread of its own: translates a text into "T(text)" and
/// corrects it into "C(text)". Needs a QCoreApplication.
class ModelServer {
 public:
  ModelServer();
  ~ModelServer();
  ModelServer(const ModelServer&) = delete;
  ModelServer& operator=(const ModelServer&) = delete;

  std::uint16_t port() const { return port_; }

  /// Texts asked for so far.
  int requestCount() const { return requestCount_; }

  /// Whether answers to texts are held back.
  void setHolding(bool isHolding) { isHolding_ = isHolding; }

 private:
  void serve();

  std::atomic<std::uint16_t> port_ = 0;
  std::atomic<int> requestCount_ = 0;
  std::atomic<bool> isHolding_ = false;
  std::atomic<bool> isEnding_ = false;
  std::unique_ptr<QThread> thread_;
};

}  // namespace kivra::e2e
