#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "app/kivra_app.h"
#include "platform/embedded/embedded_desktop.h"

namespace kivra {
namespace {

using namespace std::chrono_literals;
using embedded::Json;

/// Says of every text what it was told, and remembers what it was asked.
class FixedRecognizer : public LanguageRecognizer {
 public:
  std::optional<std::string> dominantLanguage(std::string_view text) override {
    asked = text;
    return answer;
  }

  std::optional<std::string> answer;
  std::string asked;
};

class TextActionsTest : public testing::Test {
 protected:
  TextActionsTest() {
    app_.emplace(desktop_.platform());
    app_->delegate->applicationDidFinishLaunching();
    app_->services.settings().translationEngine.set(EngineKind::deepL);
    app_->services.text.keychain().write("SECRET-KEY:fx", deepLKeyAccount);
  }

  void focus(const std::string& text, bool accessible = true) {
    embedded::FrontApplication front;
    front.accessible = accessible;
    front.field = embedded::TextField(text);
    front.field.selectAll();
    desktop_.application.focus(std::move(front));
  }

  void reply(int status, std::string body, std::chrono::microseconds delay = 0us) {
    desktop_.httpClient.queueReply({{status, std::move(body)}, {}, delay});
  }

  TranslateAction& translation() { return app_->services.text.translateAction(); }
  CorrectAction& correction() { return app_->services.text.correctAction(); }
  std::string fieldText() { return desktop_.application.front().field.text(); }

  std::string logged_;
  FixedRecognizer recognizer_;
  embedded::EmbeddedDesktop desktop_{[this](const Json& effect) {
                                       if (effect.contains("log")) logged_ += effect.dump() + "\n";
                                     },
                                     nullptr, &recognizer_};
  std::optional<KivraApp> app_;
};

TEST_F(TextActionsTest, ATextInTheRequestedLanguageGoesIntoTheSystemsLanguage) {
  struct Case {
    std::optional<std::string> dominant;
    std::string requested;
    std::vector<std::string> preferred;
    std::string target;
  };
  const std::vector<Case> cases = {
      {"ru", "RU", {"en-GB"}, "EN-US"},   {"ru", "RU", {"ru"}, "EN-US"},
      {"en", "EN-US", {"ru-RU"}, "RU"},   {"en", "EN-US", {"de-AT", "en"}, "DE"},
      {"en", "EN-US", {"ja-JP"}, "RU"},   {"ru", "ru", {"ja"}, "EN-US"},
      {"de", "EN-US", {"de"}, "EN-US"},   {"zh-Hant", "ZH", {}, "RU"},
      {"EN", "en-gb", {"ZH-Hans"}, "ZH"}, {std::nullopt, "DE", {"ru"}, "DE"},
      {"pt", "PT-PT", {"uk-UA"}, "UK"},   {"en", "X-ANY", {"ru"}, "X-ANY"},
  };
  for (const auto& [dominant, requested, preferred, target] : cases) {
    recognizer_.answer = dominant;
    desktop_.locale.setPreferredLanguages(preferred);
    EXPECT_EQ(translation().resolveTarget("text", requested), target)
        << dominant.value_or("none") << " " << requested;
  }
}

TEST_F(TextActionsTest, FourHundredCharactersDecideTheLanguage) {
  const std::string family = "👨‍👩‍👧";
  std::string text;
  for (int i = 0; i < 399; ++i) text += "я";
  translation().resolveTarget(text + family + "tail", "EN-US");
  EXPECT_EQ(recognizer_.asked, text + family);
}

TEST_F(TextActionsTest, KeysAreHandledWhileThePasteboardIsAwaited) {
  focus("слово", /*accessible=*/false);
  desktop_.application.front().copies = false;
  std::vector<bool> passed;
  const auto press = [&] {
    passed.push_back(desktop_.events.send({.type = EventType::keyDown, .keyCode = 5}));
    correction().run();
  };
  desktop_.time.asyncAfter(70ms, press);
  desktop_.time.asyncAfter(200ms, press);
  translation().run("EN-US");
  desktop_.time.serve();
  // It waits twice for 150 ms. The correction reads when the translation has read.
  EXPECT_EQ(desktop_.time.now(), 300ms);
  EXPECT_EQ(passed, (std::vector<bool>{true, true}));
  EXPECT_FALSE(translation().isRunning());
  EXPECT_TRUE(correction().isRunning());
  desktop_.time.runFor(305ms);
  EXPECT_FALSE(correction().isRunning());
}

// Neither the paste nor the giving back is a selection that the application has copied.
TEST_F(TextActionsTest, APasteMeanwhileIsNotTakenForTheSelection) {
  for (const auto moment : {900ms, 1050ms}) {
    desktop_.pasteboard.copy("из буфера");
    focus("слово", /*accessible=*/false);
    reply(200, R"({"translations":[{"text":"word"}]})", 1s);
    translation().run("EN-US");
    desktop_.time.asyncAfter(moment, [&] {
      desktop_.application.front().copies = false;
      correction().run();
    });
    desktop_.time.runFor(3s);
    EXPECT_EQ(fieldText(), "word");
    EXPECT_EQ(desktop_.notifications.last.value_or(Notification{}).title, "Нет текста") << moment;
    EXPECT_EQ(desktop_.pasteboard.stringForType(pasteboardTypeString), "из буфера");
    desktop_.notifications.last.reset();
  }
}

TEST_F(TextActionsTest, IsRunningUntilTheReplyAndNoLonger) {
  focus("слово");
  reply(200, R"({"translations":[{"text":"word"}]})", 1s);
  translation().run("EN-US");
  EXPECT_TRUE(translation().isRunning());
  desktop_.time.runFor(999ms);
  EXPECT_TRUE(translation().isRunning());
  desktop_.time.runFor(1ms);
  EXPECT_FALSE(translation().isRunning());
  EXPECT_EQ(fieldText(), "word");
  translation().run("EN-US");
  desktop_.time.serve();
  EXPECT_FALSE(translation().isRunning()) << "no reply ends it as well";
}

TEST_F(TextActionsTest, AReplyAfterTheProgramEndedIsHarmless) {
  focus("слово");
  reply(200, R"({"translations":[{"text":"word"}]})", 1s);
  reply(200, R"({"improvements":[{"text":"Слово"}]})", 1s);
  translation().run("EN-US");
  correction().run();
  desktop_.time.serve();
  app_.reset();
  desktop_.time.runFor(2s);
  EXPECT_EQ(fieldText(), "слово");
}

TEST_F(TextActionsTest, AMegabyteIsTranslatedWhole) {
  std::string text;
  while (text.size() < (1U << 20)) text += "слово за слово ";
  focus(text);
  reply(200, R"({"translations":[{"text":"short"}]})");
  translation().run("EN-US");
  desktop_.time.serve();
  EXPECT_EQ(fieldText(), "short");
}

TEST_F(TextActionsTest, NothingIsTouchedWhenThePasteboardWouldBeLost) {
  desktop_.pasteboard.copy("дорого");
  desktop_.pasteboard.setRefusal("занято");
  for (const bool accessible : {true, false}) {
    focus("слово", accessible);
    desktop_.application.front().field.select(1, 1);
    reply(200, R"({"translations":[{"text":"word"}]})");
    logged_.clear();
    translation().run("EN-US");
    desktop_.time.serve();
    EXPECT_EQ(fieldText(), "слово");
    EXPECT_EQ(desktop_.application.front().field.selection(),
              (std::pair<std::size_t, std::size_t>{1, 1}))
        << accessible;
    EXPECT_EQ(desktop_.pasteboard.stringForType(pasteboardTypeString), "дорого");
    EXPECT_NE(logged_.find("Kivra translate error: занято"), std::string::npos) << logged_;
    EXPECT_FALSE(translation().isRunning());
  }
}

TEST_F(TextActionsTest, TheSettingsOpenWhenTheUserAsksForThem) {
  int opened = 0;
  app_->services.showSettingsWindow = [&] { ++opened; };
  app_->services.text.keychain().write(std::nullopt, deepLKeyAccount);
  focus("слово");
  desktop_.alerts.queueButton("Открыть настройки…");
  for (int i = 0; i < 2; ++i) {
    correction().run();
    desktop_.time.serve();
  }
  EXPECT_EQ(opened, 1);
}

TEST_F(TextActionsTest, AFailureIsToldWithoutTheText) {
  const auto told = [&] { return desktop_.notifications.last.value_or(Notification{}); };
  focus("тайна");
  reply(403, "no access for тайна");
  translation().run("EN-US");
  desktop_.time.serve();
  EXPECT_EQ(told().title, "Перевод не удался");
  EXPECT_EQ(told().text, "HTTP 403");
  EXPECT_EQ(told().button, "");
  focus("  ");
  correction().run();
  desktop_.time.serve();
  EXPECT_EQ(told().title, "Нет текста");
}

TEST_F(TextActionsTest, WhereTheSettingsHelpAButtonOpensThem) {
  int opened = 0;
  app_->services.showSettingsWindow = [&] { ++opened; };
  app_->services.text.keychain().write(std::nullopt, deepLKeyAccount);
  focus("слово");
  translation().run("EN-US");
  desktop_.time.serve();
  const auto told = desktop_.notifications.last.value_or(Notification{});
  EXPECT_EQ(told.text, "Движок не настроен (нет ключа или модель недоступна)");
  ASSERT_EQ(told.button, "Открыть настройки…");
  told.action();
  EXPECT_EQ(opened, 1);
}

/// Hands out text that is not valid UTF-8.
class BrokenAccessibility : public Accessibility {
 public:
  AccessibilityElementPointer createSystemWide() override {
    return std::make_shared<AccessibilityElement>();
  }
  AccessibilityValue copyAttributeValue(AccessibilityElement&, std::string_view name) override {
    if (name == accessibility_attributes::focusedUIElement) return createSystemWide();
    return std::string("a\xFF");
  }
};

TEST_F(TextActionsTest, InvalidTextOfAnotherProgramIsMended) {
  BrokenAccessibility accessibility;
  auto& platform = app_->services.platform;
  const auto access = std::make_shared<TextAccess>(
      TextAccess::Environment{accessibility, platform.pasteboard, app_->services.keyOutput(),
                              platform.runLoop, platform.clock});
  const auto read = access->readSelection();
  ASSERT_TRUE(read);
  EXPECT_EQ(read->text, "a\xEF\xBF\xBD");
  EXPECT_TRUE(read->isSelection);
  EXPECT_NE(read->element, nullptr);
}

TEST_F(TextActionsTest, KeysAndTextsStayOutOfTheLog) {
  focus("СЕКРЕТНЫЙ текст");
  recognizer_.answer = "ru";
  for (const auto* body : {"SECRET", "{\"translations\":[{\"texts\":\"СЕКРЕТНЫЙ\"}]}", ""}) {
    reply(200, body);
    translation().run("EN-US");
    desktop_.time.serve();
    reply(200, body);
    correction().run();
    desktop_.time.serve();
  }
  reply(403, "Forbidden");
  translation().run("EN-US");
  desktop_.time.serve();
  EXPECT_NE(logged_.find("Forbidden"), std::string::npos);
  for (const auto* secret : {"SECRET", "СЕКРЕТНЫЙ"}) {
    EXPECT_EQ(logged_.find(secret), std::string::npos) << logged_;
  }
}

}  // namespace
}  // namespace kivra
