#include "platform/engines/local_language_model.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace kivra {

namespace {

using Json = nlohmann::json;
using Clock = std::chrono::steady_clock;

constexpr const char* noModel = "Локальная модель не отвечает.";
constexpr const char* notUnderstood = "Ответ локальной модели непонятен.";
constexpr const char* cutOff = "Локальная модель не дописала ответ.";

Json schemaOf(const GenerationSchema& schema) {
  return {{"type", "object"},
          {"properties", {{schema.property, {{"type", "string"}, {"description", schema.guide}}}}},
          {"required", {schema.property}},
          {"additionalProperties", false}};
}

/// The servers make the answer fit the schema but do not show it to the model: its guide has to be
/// among the instructions too.
std::string instructionsOf(const LanguageModelRequest& request) {
  if (!request.schema) return request.instructions;
  return request.instructions + "\n\nAnswer with a JSON object that matches this schema:\n" +
         schemaOf(*request.schema).dump();
}

std::string bodyOf(const LanguageModelRequest& request, const std::string& model) {
  Json body = {{"model", model},
               {"stream", false},
               {"messages",
                {{{"role", "system"}, {"content", instructionsOf(request)}},
                 {{"role", "user"}, {"content", request.prompt}}}}};
  if (request.schema) {
    body["response_format"] = {
        {"type", "json_schema"},
        {"json_schema",
         {{"name", "answer"}, {"strict", true}, {"schema", schemaOf(*request.schema)}}}};
  }
  return body.dump(-1, ' ', false, Json::error_handler_t::replace);
}

const Json* member(const Json* object, const char* name) {
  if (object == nullptr || !object->is_object()) return nullptr;
  const auto found = object->find(name);
  return found == object->end() ? nullptr : &*found;
}

using Answer = std::variant<std::string, PlatformError>;

Answer answerIn(const HttpResponse& response, const std::optional<GenerationSchema>& schema) {
  if (response.statusCode != httpOk) {
    return PlatformError("Локальная модель: HTTP " +
                         std::to_string(response.statusCode.value_or(0)));
  }
  const auto body = Json::parse(response.body, nullptr, false);
  const auto* const choices = member(&body, "choices");
  if (choices == nullptr || !choices->is_array() || choices->empty()) {
    return PlatformError(notUnderstood);
  }
  const auto* const reason = member(&choices->front(), "finish_reason");
  if (reason != nullptr && *reason == "length") return PlatformError(cutOff);
  const auto* const content = member(member(&choices->front(), "message"), "content");
  if (content == nullptr || !content->is_string()) return PlatformError(notUnderstood);
  if (!schema) return content->get<std::string>();
  const auto object = Json::parse(content->get_ref<const std::string&>(), nullptr, false);
  const auto* const value = member(&object, schema->property.c_str());
  if (value == nullptr || !value->is_string()) return PlatformError(notUnderstood);
  return value->get<std::string>();
}

}  // namespace

LocalLanguageModel::LocalLanguageModel(HttpClient& http, RunLoop& runLoop, Options options)
    : http_(http), runLoop_(runLoop), options_(std::move(options)) {}

bool LocalLanguageModel::isAvailable() {
  // Asked again from the run loop while it waits, it tells what it knew last.
  if (isProbing_ || Clock::now() < known_->until) return known_->model.has_value();
  isProbing_ = true;
  const LocalModelProbe probe(http_, options_.ports, options_.probeWait);
  const auto deadline = Clock::now() + options_.probeWait;
  runLoop_.runUntil([&] { return probe.isSettled() || Clock::now() >= deadline; });
  *known_ = {.model = probe.found(), .until = Clock::now() + options_.probeLife};
  isProbing_ = false;
  return known_->model.has_value();
}

void LocalLanguageModel::respond(LanguageModelRequest request, Completion<std::string> completion) {
  if (!known_->model) {
    runLoop_.asyncAfter(std::chrono::microseconds(0),
                        [called = std::move(completion)] { called(PlatformError(noModel)); });
    return;
  }
  http_.data({.method = "POST",
              .url = known_->model->server + "/v1/chat/completions",
              .headers = {{"Content-Type", "application/json"}},
              .body = bodyOf(request, known_->model->name),
              .timeout = options_.answerWait},
             [weak = std::weak_ptr(known_), schema = request.schema,
              called = std::move(completion)](const auto& answer) {
               if (const auto* response = std::get_if<HttpResponse>(&answer)) {
                 called(answerIn(*response, schema));
                 return;
               }
               // Whether it still answers has to be found out anew.
               if (const auto known = weak.lock()) known->until = {};
               called(std::get<PlatformError>(answer));
             });
}

}  // namespace kivra
