#include "text/apple_translate_engine.h"

#include <optional>
#include <utility>

#include "text/text_engine_error.h"
#include "text/translation_language.h"

namespace kivra {

namespace {

constexpr WindowSize hiddenSize{1, 1};
constexpr WindowSize panelSize{420, 140};
constexpr std::uint32_t borderless = 0;
constexpr std::uint32_t onAllDesktopsAndStationary = 17;

}  // namespace

/// Shows the panel for as long as it lives, however the request ends.
class AppleTranslateEngine::Panel {
 public:
  explicit Panel(AppleTranslateEngine& engine) : engine_(engine.weak_from_this()) {
    engine.showPanel();
  }
  Panel(const Panel&) = delete;
  Panel& operator=(const Panel&) = delete;
  ~Panel() {
    if (const auto engine = engine_.lock()) engine->hidePanel();
  }

 private:
  std::weak_ptr<AppleTranslateEngine> engine_;
};

AppleTranslateEngine::AppleTranslateEngine(Translation& translation, Windows& windows,
                                           Application& application, RunLoop& runLoop)
    : translation_(translation), windows_(windows), application_(application), runLoop_(runLoop) {}

Task<std::string> AppleTranslateEngine::translate(std::string text, std::string target,
                                                  std::optional<std::string> source) {
  if (coordinator_->pending) throw TextEngineError::busy();
  if (!hostWindow_) createHostWindow();
  TranslationLanguages languages{std::nullopt, translationLanguage(target)};
  if (source) languages.source = translationLanguage(*source);
  auto askStatus = [&](Completion<TranslationStatus> completion) {
    translation_.status(languages, text, std::move(completion));
  };
  const auto status = co_await completionOf<TranslationStatus>(std::move(askStatus));
  if (status == TranslationStatus::unsupported) {
    throw TextEngineError::unsupportedPair("→ " + target);
  }
  // Another request may have come while the status was asked for; it must not be lost.
  if (coordinator_->pending) throw TextEngineError::busy();
  const auto needsDownload = status == TranslationStatus::supported;
  std::optional<Panel> panel;
  if (needsDownload) panel.emplace(*this);
  auto wait = [&](Completion<std::string> continuation) {
    handOver({std::move(text), needsDownload, std::move(continuation)}, languages);
  };
  co_return co_await completionOf<std::string>(std::move(wait));
}

Task<std::string> AppleTranslateEngine::correct(std::string /*text*/) {
  throw TextEngineError::unsupported();
  co_return std::string();
}

void AppleTranslateEngine::createHostWindow() {
  hostWindow_ = windows_.windowCreate({.name = "translation",
                                       .styleMask = borderless,
                                       .contentSize = hiddenSize,
                                       .alphaValue = 0,
                                       .isOpaque = false,
                                       .ignoresMouseEvents = true,
                                       .collectionBehavior = onAllDesktopsAndStationary});
  hostView_ = std::make_shared<HostView>(coordinator_, *hostWindow_, translation_, runLoop_);
  hostView_->observe();
  hostWindow_->orderBack();
}

void AppleTranslateEngine::showPanel() {
  coordinator_->setDownloadVisible(true);
  hostWindow_->setContentSize(panelSize);
  hostWindow_->center();
  hostWindow_->setAlphaValue(1);
  hostWindow_->setLevel(window_levels::floating);
  hostWindow_->makeKeyAndOrderFront();
  application_.activateIgnoringOtherApps();
}

void AppleTranslateEngine::hidePanel() {
  coordinator_->setDownloadVisible(false);
  hostWindow_->setAlphaValue(0);
  hostWindow_->setLevel(window_levels::normal);
  hostWindow_->setContentSize(hiddenSize);
  hostWindow_->orderBack();
}

void AppleTranslateEngine::handOver(Coordinator::Pending request,
                                    const TranslationLanguages& languages) {
  coordinator_->pending = std::move(request);
  auto configuration = coordinator_->configuration();
  if (configuration && configuration->languages == languages) {
    configuration->invalidate();
    coordinator_->setConfiguration(std::move(*configuration));
  } else {
    coordinator_->setConfiguration({languages, 0});
  }
}

}  // namespace kivra
