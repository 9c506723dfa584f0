#include "platform/embedded/embedded_translation.h"

namespace kivra::embedded {

/// Reports one line for each text, whether or not something had to be prepared for it.
class EmbeddedTranslation::Session : public TranslationSession {
 public:
  Session(EmbeddedTranslation& translation, TranslationLanguages languages)
      : translation_(translation), languages_(std::move(languages)) {}

  void prepareTranslation(std::string text, Completion<std::monostate> completion) override {
    report(text, true);
    isReported_ = true;
    const auto pair = translation_.pairFor(languages_, text);
    auto failure = pair.prepareFailure;
    if (pair.status == TranslationStatus::unsupported && !failure) failure = "no such pair";
    // What takes time is the fetching; when it succeeds, the time passes while translating.
    translation_.time_.asyncAfter(failure ? pair.answer.delay : std::chrono::microseconds(0),
                                  [failure, completion = std::move(completion)] {
                                    if (failure) {
                                      completion(PlatformError(*failure));
                                    } else {
                                      completion(std::monostate());
                                    }
                                  });
  }

  void translate(std::string text, Completion<std::string> completion) override {
    if (!isReported_) report(text, false);
    answerLater(translation_.time_, translation_.pairFor(languages_, text).answer,
                std::move(completion));
  }

 private:
  void report(const std::string& text, bool prepare) const {
    translation_.effects_.report([&] {
      return Json{{"translation",
                   {{"text", text},
                    {"source", languages_.source ? Json(*languages_.source) : Json(nullptr)},
                    {"target", languages_.target},
                    {"prepare", prepare}}}};
    });
  }

  EmbeddedTranslation& translation_;
  TranslationLanguages languages_;
  bool isReported_ = false;
};

void EmbeddedTranslation::setPair(const TranslationLanguages& languages, Pair pair) {
  pairs_.insert_or_assign(Key(languages.source, languages.target), std::move(pair));
}

void EmbeddedTranslation::status(TranslationLanguages languages, std::string text,
                                 Completion<TranslationStatus> completion) {
  const auto status = pairFor(languages, text).status;
  time_.asyncAfter(std::chrono::microseconds(0),
                   [status, completion = std::move(completion)] { completion(status); });
}

std::shared_ptr<TranslationSession> EmbeddedTranslation::session(TranslationLanguages languages) {
  return std::make_shared<Session>(*this, std::move(languages));
}

EmbeddedTranslation::Pair EmbeddedTranslation::pairFor(const TranslationLanguages& languages,
                                                       const std::string& text) {
  const auto source = languages.source ? languages.source : recognizer_.dominantLanguage(text);
  for (const auto& key : {Key(source, languages.target), Key(std::nullopt, languages.target)}) {
    if (const auto found = pairs_.find(key); found != pairs_.end()) return found->second;
  }
  return {};
}

}  // namespace kivra::embedded
