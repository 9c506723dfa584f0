#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/http_client.h"

namespace kivra {

/// A model and the server of this machine that has it.
struct LocalModel {
  std::string server;  ///< "http://127.0.0.1:8080"
  std::string name;
};

/// One look at the ports for a server that can answer now. Sends no text of the user's. What it
/// asks for lives on after it.
class LocalModelProbe {
 public:
  LocalModelProbe(HttpClient& http, const std::vector<std::uint16_t>& ports,
                  std::chrono::milliseconds timeout);

  /// Every port is settled, or one is found and those before it have nothing.
  bool isSettled() const;

  /// The model at the first port that has one, as far as is known yet.
  std::optional<LocalModel> found() const;

 private:
  struct Port {
    std::string server;
    bool isSettled = false;
    std::optional<std::string> model;
  };
  using Ports = std::vector<Port>;

  static void askForModels(HttpClient& http, const std::weak_ptr<Ports>& weak, std::size_t index,
                           std::chrono::milliseconds timeout);
  static void askForHealth(HttpClient& http, const std::weak_ptr<Ports>& weak, std::size_t index,
                           const std::string& model, std::chrono::milliseconds timeout);

  std::shared_ptr<Ports> ports_ = std::make_shared<Ports>();
};

}  // namespace kivra
