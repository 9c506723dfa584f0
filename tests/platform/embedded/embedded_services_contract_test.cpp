// The smaller services of the embedded desktop, with their user before them.

#include "platform/accessibility_contract.h"
#include "platform/alerts_contract.h"
#include "platform/embedded/embedded_desktop.h"
#include "platform/http_client_contract.h"
#include "platform/keychain_contract.h"
#include "platform/language_model_contract.h"
#include "platform/pasteboard_contract.h"
#include "platform/run_loop_contract.h"
#include "platform/spell_checker_contract.h"
#include "platform/translation_contract.h"
#include "platform/workspace_contract.h"

namespace kivra {
namespace {

using embedded::Json;

/// Takes every text that has letters for English.
class EnglishReader : public LanguageRecognizer {
 public:
  std::optional<std::string> dominantLanguage(std::string_view text) override {
    return text.find('e') == std::string_view::npos ? std::nullopt : std::optional("en");
  }
};

/// A desktop that writes down what the program does to it.
class EmbeddedServices {
 public:
  EmbeddedServices() { say("anything"); }

  Accessibility& accessibility() { return desktop_.accessibility; }
  void openField(const std::string& text) { front().field = embedded::TextField(text); }
  void openPassword() {
    openField("secret");
    front().secure = true;
  }
  void selectAll() { front().field.selectAll(); }

  Alerts& alerts() { return desktop_.alerts; }
  void press(const std::string& title) { desktop_.alerts.queueButton(title); }
  void close() {}
  Alert shown() const {
    const auto alert = last("alert");
    return {alert["title"], alert["text"], alert["buttons"]};
  }

  HttpClient& client() { return desktop_.httpClient; }
  static std::string address() { return "https://localhost"; }
  void answer(int status, const std::string& body) {
    desktop_.httpClient.queueReply({.response = {status, body}, .failure = {}});
  }
  void stayUnanswered() {
    desktop_.httpClient.queueReply({.response = {}, .failure = {}, .delay = std::chrono::hours(1)});
  }
  HttpRequest received() const {
    const auto sent = last("request");
    HttpRequest request{.method = sent["method"], .url = sent["url"], .body = sent["body"].dump()};
    for (const auto& [name, value] : sent["headers"].items()) {
      request.headers.emplace_back(name, value);
    }
    return request;
  }

  Keychain& keychain() { return desktop_.keychain; }

  LanguageModel& model() { return desktop_.languageModel; }
  void offer(bool isThere) { desktop_.languageModel.set(isThere, {}); }
  void say(const LanguageModelRequest& /*request*/, const std::string& text) {
    desktop_.languageModel.set(true, {.reply = text, .failure = {}});
  }
  void fail() {
    const embedded::Answer failure{.reply = {}, .failure = "failed"};
    desktop_.languageModel.set(true, failure);
    setTranslation(failure);
  }

  Translation& translation() { return desktop_.translation; }
  void say(const std::string& text) { setTranslation({.reply = text, .failure = {}}); }

  Pasteboard& pasteboard() { return desktop_.pasteboard; }
  Pasteboard& elsewhere() { return desktop_.pasteboard; }

  RunLoop& loop() { return desktop_.time; }
  std::chrono::microseconds now() { return desktop_.time.now(); }
  void pass(std::chrono::microseconds duration) { desktop_.time.sleep(duration); }
  bool turnUntil(const std::function<bool()>& condition,
                 std::chrono::microseconds timeout = std::chrono::minutes(1)) {
    const auto end = now() + timeout;
    loop().runUntil([&] { return condition() || now() > end; });
    return condition();
  }

  Workspace& workspace() { return desktop_.session; }
  void bringToFront(const std::optional<std::string>& identifier) {
    embedded::FrontApplication application;
    application.identifier = identifier;
    desktop_.application.focus(application);
  }
  void leave() { bringToFront(std::nullopt); }
  void readPassword(bool isRead) { front().secure = isRead; }
  std::vector<std::string> opened() const { return {last("open")}; }

 private:
  void setTranslation(const embedded::Answer& answer) {
    desktop_.translation.setPair(
        {"en", "es"},
        {.status = TranslationStatus::installed, .answer = answer, .prepareFailure = {}});
  }
  embedded::FrontApplication& front() { return desktop_.application.front(); }
  Json last(const std::string& effect) const {
    const auto found = std::ranges::find_if(effects_.rbegin(), effects_.rend(),
                                            [&](const Json& e) { return e.contains(effect); });
    return found == effects_.rend() ? Json() : found->at(effect);
  }

  std::vector<Json> effects_;
  EnglishReader recognizer_;
  embedded::EmbeddedDesktop desktop_{[this](const Json& effect) { effects_.push_back(effect); },
                                     nullptr, &recognizer_};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, AccessibilityContract, EmbeddedServices);
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, AlertsContract, EmbeddedServices);
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, HttpClientContract, EmbeddedServices);
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, KeychainContract, EmbeddedServices);
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, LanguageModelContract, EmbeddedServices);
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, PasteboardContract, EmbeddedServices);
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, RunLoopContract, EmbeddedServices);
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, TranslationContract, EmbeddedServices);
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, WorkspaceContract, EmbeddedServices);

class FixedWords {
 public:
  FixedWords() {
    checker_.setDictionary("en", {"cat", "letter", "correct"}, {{"corect", "correct"}});
    checker_.setDictionary("ru", {"кошка"}, {});
  }
  SpellChecker& checker() { return checker_; }

 private:
  embedded::EmbeddedSpellChecker checker_{nullptr};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, SpellCheckerContract, FixedWords);

}  // namespace
}  // namespace kivra
