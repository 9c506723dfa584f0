#include "model_server.h"

#include <QThread>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <thread>

#include "event_loop.h"
#include "scripted_server.h"
#include "x_session.h"

namespace kivra::e2e {

namespace {

using Json = nlohmann::json;

std::string contentFor(const Json& request) {
  const std::string text = request.at("messages").at(1).at("content");
  if (!request.contains("response_format")) return "T(" + text + ")";
  return Json{{"text", "C(" + text + ")"}}.dump();
}

std::string answerTo(const std::string& body) {
  const Json answer = {
      {"choices",
       {{{"message", {{"content", contentFor(Json::parse(body))}}}, {"finish_reason", "stop"}}}}};
  return qt::httpAnswer(200, answer.dump());
}

}  // namespace

ModelServer::ModelServer() : thread_(QThread::create([this] { serve(); })) {
  thread_->start();
  if (!waitFor([this] { return port_ != 0; })) throw std::runtime_error("no server");
}

ModelServer::~ModelServer() {
  isEnding_ = true;
  thread_->wait();
}

void ModelServer::serve() {
  qt::ScriptedServer server([this](const qt::ScriptedServer::Request& request) {
    if (request.line == "GET /v1/models") {
      return std::optional(qt::httpAnswer(200, R"({"data":[{"id":"test"}]})"));
    }
    if (request.line != "POST /v1/chat/completions") {
      return std::optional(qt::httpAnswer(404, ""));
    }
    ++requestCount_;
    while (isHolding_ && !isEnding_) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return std::optional(answerTo(request.body));
  });
  port_ = server.port();
  qt::turnUntil([this] { return isEnding_.load(); }, std::chrono::hours(1));
}

}  // namespace kivra::e2e
