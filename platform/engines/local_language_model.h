#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/engines/local_model_probe.h"
#include "platform/http_client.h"
#include "platform/language_model.h"
#include "platform/run_loop.h"

namespace kivra {

/// A server on this machine that speaks the OpenAI chat API (llama.cpp's server, Ollama). Other
/// machines are never asked: there is no setting for an address.
class LocalLanguageModel : public LanguageModel {
 public:
  struct Options {
    std::vector<std::uint16_t> ports = {8080, 11434};  ///< the first that answers is taken
    std::chrono::milliseconds probeWait{200};
    std::chrono::milliseconds probeLife{1000};  ///< what was found out counts for so long
    std::chrono::milliseconds answerWait{120000};
  };

  LocalLanguageModel(HttpClient& http, RunLoop& runLoop)
      : LocalLanguageModel(http, runLoop, Options{}) {}
  LocalLanguageModel(HttpClient& http, RunLoop& runLoop, Options options);

  bool isAvailable() override;
  void respond(LanguageModelRequest request, Completion<std::string> completion) override;

 private:
  using Moment = std::chrono::steady_clock::time_point;

  /// Outlives the model where an answer is still to come.
  struct Known {
    std::optional<LocalModel> model;
    Moment until;
  };

  HttpClient& http_;
  RunLoop& runLoop_;
  Options options_;
  std::shared_ptr<Known> known_ = std::make_shared<Known>();
  bool isProbing_ = false;
};

}  // namespace kivra
