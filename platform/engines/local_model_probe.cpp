#include "platform/engines/local_model_probe.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace kivra {

namespace {

using Json = nlohmann::json;

constexpr int stillLoading = 503;

std::optional<int> statusOf(const std::variant<HttpResponse, PlatformError>& answer) {
  const auto* response = std::get_if<HttpResponse>(&answer);
  return response == nullptr ? std::nullopt : response->statusCode;
}

/// The first model that writes; Ollama lists those for searching as well.
std::optional<std::string> modelIn(const std::variant<HttpResponse, PlatformError>& answer) {
  if (statusOf(answer) != httpOk) return std::nullopt;
  const auto body = Json::parse(std::get<HttpResponse>(answer).body, nullptr, false);
  if (!body.is_object() || !body.contains("data") || !body["data"].is_array()) return std::nullopt;
  for (const auto& model : body["data"]) {
    if (!model.is_object() || !model.contains("id") || !model["id"].is_string()) continue;
    const auto& id = model["id"].get_ref<const std::string&>();
    if (id.find("embed") == std::string::npos) return id;
  }
  return std::nullopt;
}

}  // namespace

LocalModelProbe::LocalModelProbe(HttpClient& http, const std::vector<std::uint16_t>& ports,
                                 std::chrono::milliseconds timeout) {
  for (const auto port : ports) {
    ports_->push_back({.server = "http://127.0.0.1:" + std::to_string(port), .model = {}});
  }
  for (std::size_t index = 0; index < ports.size(); ++index) {
    askForModels(http, ports_, index, timeout);
  }
}

void LocalModelProbe::askForModels(HttpClient& http, const std::weak_ptr<Ports>& weak,
                                   std::size_t index, std::chrono::milliseconds timeout) {
  const auto server = weak.lock()->at(index).server;
  http.data({.url = server + "/v1/models", .timeout = timeout},
            [&http, weak, index, timeout](const auto& answer) {
              const auto ports = weak.lock();
              if (!ports) return;
              if (const auto model = modelIn(answer)) {
                askForHealth(http, weak, index, *model, timeout);
              } else {
                ports->at(index).isSettled = true;
              }
            });
}

// llama.cpp's server lists its model while it still loads it, and says so here; Ollama has no such
// page and loads when asked.
void LocalModelProbe::askForHealth(HttpClient& http, const std::weak_ptr<Ports>& weak,
                                   std::size_t index, const std::string& model,
                                   std::chrono::milliseconds timeout) {
  const auto server = weak.lock()->at(index).server;
  http.data({.url = server + "/health", .timeout = timeout},
            [weak, index, model](const auto& answer) {
              const auto ports = weak.lock();
              if (!ports) return;
              auto& port = ports->at(index);
              port.isSettled = true;
              const auto status = statusOf(answer);
              if (status && *status != stillLoading) port.model = model;
            });
}

bool LocalModelProbe::isSettled() const {
  for (const auto& port : *ports_) {
    if (!port.isSettled) return false;
    if (port.model) return true;
  }
  return true;
}

std::optional<LocalModel> LocalModelProbe::found() const {
  for (const auto& port : *ports_) {
    if (port.model) return LocalModel{port.server, *port.model};
  }
  return std::nullopt;
}

}  // namespace kivra
