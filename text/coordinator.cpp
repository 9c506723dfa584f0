#include "text/coordinator.h"

#include <utility>

namespace kivra {

namespace {

Task<std::string> translated(TranslationSession& session, const Coordinator::Pending& request) {
  if (request.needsDownload) {
    auto prepare = [&](Completion<std::monostate> completion) {
      session.prepareTranslation(request.text, std::move(completion));
    };
    co_await completionOf<std::monostate>(std::move(prepare));
  }
  auto translate = [&](Completion<std::string> completion) {
    session.translate(request.text, std::move(completion));
  };
  co_return co_await completionOf<std::string>(std::move(translate));
}

}  // namespace

void Coordinator::setConfiguration(TranslationConfiguration configuration) {
  willChange();
  configuration_ = std::move(configuration);
}

void Coordinator::setDownloadVisible(bool visible) {
  willChange();
  downloadVisible_ = visible;
}

Task<void> Coordinator::handle(std::shared_ptr<TranslationSession> session) {
  if (!pending) co_return;
  const auto request = std::move(*pending);
  pending.reset();
  std::variant<std::string, PlatformError> answer;
  try {
    answer = co_await translated(*session, request);
  } catch (const PlatformError& error) {
    answer = error;
  }
  request.continuation(std::move(answer));
}

}  // namespace kivra
