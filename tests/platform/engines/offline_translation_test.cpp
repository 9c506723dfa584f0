#include "platform/engines/offline_translation.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "event_loop.h"
#include "fake_package_kit.h"
#include "platform/engines/missing_pair.h"
#include "platform/language/cld2_language_recognizer.h"
#include "platform/qt/main_thread.h"
#include "platform/qt/qt_http_client.h"
#include "platform/translation_contract.h"
#include "private_bus.h"
#include "scripted_server.h"

namespace kivra {
namespace {

using namespace std::chrono_literals;
using Json = nlohmann::json;
using qt::httpAnswer;
using qt::ScriptedServer;

constexpr const char* english = "The house is big and the garden is small.";

/// Translators that stand in for those of a machine.
class StandIns {
 public:
  StandIns() {
    // Nothing answers there.
    options_.libreTranslatePort = 1;
  }

  Translation& translation() {
    if (!translation_) {
      translation_.emplace(http_, recognizer_, qt::callOnMainThread, options_);
    }
    return *translation_;
  }

 protected:
  /// Programs that answer as the test wants: `apertium` lists the file "modes" and else does what
  /// `translating` says; `apt-cache` knows the packages.
  void standIn(const std::string& modes, const std::string& packages,
               const std::string& translating = "cat") {
    std::ofstream(directory_ / "modes") << modes;
    const auto list = (directory_ / "modes").string();
    options_.programs.apertium = script(
        "apertium", "if [ \"$1\" = -l ]; then cat " + list + "; else " + translating + "; fi");
    options_.programs.aptCache = script("apt-cache", "echo '" + packages + "'");
    options_.programs.dpkgQuery = script("dpkg-query", "[ \"$3\" = apertium-one-way ]");
  }

  std::string script(const std::string& name, const std::string& body) {
    const auto path = directory_ / name;
    std::ofstream(path) << "#!/bin/sh\n" << body << "\n";
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
  }

  e2e::PrivateBus bus_;
  std::filesystem::path directory_ = bus_.home();
  qt::QtHttpClient http_;
  Cld2LanguageRecognizer recognizer_;
  TranslationServices::Options options_;
  std::optional<OfflineTranslation> translation_;
};

class OneWayApertium : public StandIns {
 public:
  OneWayApertium() { say("anything"); }
  void say(const std::string& text) { standIn("eng-spa\n", "", "printf '" + text + "'"); }
  void fail() { standIn("eng-spa\n", "", "exit 1"); }
  static void turnUntil(const std::function<bool()>& condition) { qt::turnUntil(condition); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Offline, TranslationContract, OneWayApertium);

class OfflineTranslationTest : public testing::Test, protected StandIns {
 protected:
  TranslationStatus status(const TranslationLanguages& languages, const std::string& text) {
    const auto answer = qt::answerOf<TranslationStatus>(
        [&](auto completion) { translation().status(languages, text, std::move(completion)); });
    EXPECT_EQ(failureOf(answer), "");
    return std::get<TranslationStatus>(answer);
  }

  std::string translate(const TranslationLanguages& languages, const std::string& text) {
    const auto session = translation().session(languages);
    return inWords(qt::answerOf<std::string>(
        [&](auto completion) { session->translate(text, std::move(completion)); }));
  }

  std::string prepare(const TranslationLanguages& languages, const std::string& text) {
    const auto session = translation().session(languages);
    return inWords(qt::answerOf<std::monostate>(
        [&](auto completion) { session->prepareTranslation(text, std::move(completion)); }));
  }
};

TEST_F(OfflineTranslationTest, TranslatesWithTheInstalledApertium) {
  EXPECT_EQ(status({std::nullopt, "es"}, english), TranslationStatus::installed);
  EXPECT_EQ(status({"en-US", "es"}, ""), TranslationStatus::installed);
  EXPECT_EQ(prepare({std::nullopt, "es"}, english), "done");
  EXPECT_EQ(translate({std::nullopt, "es"}, english), "La casa es grande y el jardín es pequeño.");
  EXPECT_EQ(translate({"en", "es"}, "Hello.\n\nqqxyz [x] ^y$ 😀\n"), "Hola.\n\nqqxyz [x] ^y$ 😀\n");
  EXPECT_EQ(translate({std::nullopt, "en-US"}, "La casa es grande."), "The house is big.");
  EXPECT_EQ(translate({"es", "en-US"}, "El color de la casa"), "The color of the house");
  EXPECT_EQ(translate({"es", "en-GB"}, "El color de la casa"), "The colour of the house");
}

TEST_F(OfflineTranslationTest, OffersNoPackagesThatTranslateNothing) {
  standIn("eng-spa\n", "apertium-lex-tools\napertium-all-dev");
  EXPECT_EQ(status({"en", "zh-Hans"}, ""), TranslationStatus::unsupported);
  EXPECT_EQ(status({"en", "en-US"}, ""), TranslationStatus::unsupported);
}

TEST_F(OfflineTranslationTest, SaysWhatToInstallForAPairThatDebianLacks) {
  standIn("eng-spa\n", "apertium-eng-spa");
  std::string told;
  options_.pairIsMissing = [&](const auto& languages) { told += missingPair(languages).remedy; };
  status({"en", "es"}, "");
  status({std::nullopt, "es"}, "12345");
  EXPECT_EQ(told, "") << "none is missing, or there is no pair";
  EXPECT_EQ(status({std::nullopt, "ru"}, english), TranslationStatus::unsupported);
  EXPECT_NE(told.find("libretranslate --load-only en,ru\n"), std::string::npos) << told;
}

TEST_F(OfflineTranslationTest, WithoutApertiumNothingIsSupported) {
  options_.programs = {
      .apertium = "/nonexistent", .aptCache = "/nonexistent", .dpkgQuery = "/nonexistent"};
  EXPECT_EQ(status({"en", "es"}, ""), TranslationStatus::unsupported);
}

TEST_F(OfflineTranslationTest, FailsOnAnEmptyAnswerAndOnAFailure) {
  standIn("eng-spa\n", "", "echo");
  EXPECT_TRUE(translate({"en", "es"}, "text").starts_with("failed: "));
  EXPECT_EQ(translate({"en", "es"}, " \n"), "\n");
  standIn("eng-spa\n", "", "echo half; exit 1");
  EXPECT_TRUE(translate({"en", "es"}, "text").starts_with("failed: "));
}

TEST_F(OfflineTranslationTest, TakesAMegabyteThatTheProgramDoesNotRead) {
  standIn("eng-spa\n", "", "echo done");
  EXPECT_EQ(translate({"en", "es"}, std::string(1U << 20U, 'x')), "done\n");
  standIn("eng-spa\n", "", "cat");
  std::string text;
  while (text.size() < (1U << 20U)) text += "длинный текст ";
  EXPECT_TRUE(translate({"en", "es"}, text) == text);
}

TEST_F(OfflineTranslationTest, EndsTheProgramOfADroppedSession) {
  const auto started = directory_ / "started";
  standIn("eng-spa\n", "",
          "echo $$ > " + started.string() + ".new; mv " + started.string() + ".new " +
              started.string() + "; sleep 1000 & wait");
  const auto held = std::make_shared<int>();
  bool called = false;
  auto session = translation().session({"en", "es"});
  session->translate("text", [held, &called](const auto&) { called = true; });
  ASSERT_TRUE(qt::turnUntil([&] { return std::filesystem::exists(started); }));
  int pid = 0;
  std::ifstream(started) >> pid;
  ASSERT_GT(pid, 0);
  session.reset();
  EXPECT_TRUE(qt::turnUntil([&] { return held.use_count() == 1; }));
  EXPECT_FALSE(called);
  EXPECT_FALSE(std::filesystem::exists("/proc/" + std::to_string(pid)));
  EXPECT_EQ(status({"en", "es"}, ""), TranslationStatus::installed) << "the worker is free again";
}

TEST_F(OfflineTranslationTest, EndsAtOnceWhileAProgramRuns) {
  const auto started = directory_ / "started";
  standIn("eng-spa\n", "", "touch " + started.string() + "; sleep 1000");
  const auto session = translation().session({"en", "es"});
  session->translate("text", [](const auto&) { FAIL(); });
  ASSERT_TRUE(qt::turnUntil([&] { return std::filesystem::exists(started); }));
  const auto start = std::chrono::steady_clock::now();
  translation_.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
}

class PackageTest : public OfflineTranslationTest {
 protected:
  PackageTest() {
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", bus_.environment().at("DBUS_SESSION_BUS_ADDRESS").c_str(),
             1);
    standIn("", "apertium-fra-frp\napertium-eng-spa\napertium-en-es");
  }

  const TranslationLanguages languages_{"es", "en-US"};
};

TEST_F(PackageTest, InstallsAMissingPairThroughThePackageService) {
  FakePackageKit service({.available = {"apertium-eng-spa"}, .install = [this] {
                            std::ofstream(directory_ / "modes") << "spa-eng\neng-spa\n";
                          }});
  EXPECT_EQ(status(languages_, ""), TranslationStatus::supported);
  EXPECT_TRUE(service.calls().empty()) << "asking is not installing";
  EXPECT_EQ(prepare(languages_, "texto"), "done");
  EXPECT_EQ(service.calls(),
            (std::vector<std::string>{"Resolve apertium-eng-spa",
                                      "InstallPackages apertium-eng-spa;1.0;all;debian"}));
  EXPECT_EQ(status(languages_, ""), TranslationStatus::installed);
  EXPECT_EQ(translate(languages_, "texto"), "texto");
}

TEST_F(PackageTest, FailsWhenTheUserRefuses) {
  const FakePackageKit service({.available = {"apertium-eng-spa"}, .isRefused = true});
  EXPECT_EQ(prepare(languages_, "texto"), "failed: Failed to obtain authentication.");
  EXPECT_EQ(status(languages_, ""), TranslationStatus::supported);
}

TEST_F(PackageTest, FailsWithoutTheServiceOrThePackage) {
  EXPECT_TRUE(prepare(languages_, "texto").starts_with("failed: "));
  const FakePackageKit service({.available = {}});
  EXPECT_TRUE(prepare(languages_, "texto").starts_with("failed: "));
}

TEST_F(PackageTest, CancelsWhenTheSessionIsDropped) {
  FakePackageKit service({.available = {"apertium-eng-spa"}, .isSilent = true});
  auto session = translation().session(languages_);
  session->prepareTranslation("texto", [](const auto&) { FAIL(); });
  ASSERT_TRUE(qt::turnUntil([&] { return service.calls().size() == 2; }));
  session.reset();
  EXPECT_TRUE(qt::turnUntil([&] {
    const auto calls = service.calls();
    return calls.back() == "Cancel";
  }));
}

TEST_F(PackageTest, OffersNoPackageThatIsInstalledAndLacksTheDirection) {
  options_.programs.dpkgQuery = script("dpkg-query", "printf installed");
  EXPECT_EQ(status(languages_, ""), TranslationStatus::unsupported);
}

/// A LibreTranslate server before an Apertium that must not be asked.
class LibreTranslateTest : public OfflineTranslationTest {
 protected:
  LibreTranslateTest() {
    standIn("eng-spa\n", "", "echo by Apertium");
    options_.libreTranslatePort = server_.port();
    options_.libreTranslateWait = 60s;
  }

  std::optional<std::string> answer(const ScriptedServer::Request& request) {
    return request.line == "GET /languages" ? httpAnswer(200, languages_) : translated_;
  }

  Json lastBody() const { return Json::parse(server_.requests.back().body); }

  std::string languages_ =
      R"([{"code":"en","name":"English","targets":["es","zh-Hans","pt","ru"]},
          {"code":"ru","name":"Russian","targets":["en","zt"]}])";
  std::optional<std::string> translated_ = httpAnswer(200, R"({"translatedText":"la casa"})");
  ScriptedServer server_{[this](const auto& request) { return answer(request); }};
};

TEST_F(LibreTranslateTest, IsAskedInItsOwnCodes) {
  EXPECT_EQ(status({std::nullopt, "es"}, english), TranslationStatus::installed);
  EXPECT_EQ(translate({std::nullopt, "es"}, "The \"house\" is big.\n"), "la casa");
  EXPECT_EQ(server_.requests.back().line, "POST /translate");
  EXPECT_EQ(lastBody(), (Json{{"q", "The \"house\" is big.\n"},
                              {"source", "en"},
                              {"target", "es"},
                              {"format", "text"}}));
  translate({"ru", "en-US"}, "дом");
  EXPECT_EQ(lastBody()["target"], "en");
  translate({"en", "zh-Hans"}, "house");
  EXPECT_EQ(lastBody()["target"], "zh-Hans");
  translate({"en", "pt-PT"}, "house");
  EXPECT_EQ(lastBody()["target"], "pt");
  translate({std::nullopt, "es"}, "12345");
  EXPECT_EQ(lastBody()["source"], "auto");
}

TEST_F(LibreTranslateTest, LeavesWhatItDoesNotKnowToApertium) {
  languages_ = R"([{"code":"de","targets":["fr"]}])";
  EXPECT_EQ(translate({"en", "es"}, "house"), "by Apertium\n");
  for (const char* odd :
       {"", "[]", "{}", "null", "[1,null,{\"code\":7,\"targets\":8}]", "<html>"}) {
    languages_ = odd;
    EXPECT_EQ(translate({"en", "es"}, "house"), "by Apertium\n") << odd;
  }
}

TEST_F(LibreTranslateTest, FailsWhenTheServerDoes) {
  for (const char* odd : {"", "[]", "{}", "null", R"({"translatedText":7})", "<html>",
                          R"({"translatedText":""})", R"({"translatedText":" \n"})"}) {
    translated_ = httpAnswer(200, odd);
    EXPECT_TRUE(translate({"en", "es"}, "house").starts_with("failed: ")) << odd;
  }
  translated_ = httpAnswer(429, R"({"error":"slow down, you sent: secret text"})");
  EXPECT_EQ(translate({"en", "es"}, "secret text"), "failed: LibreTranslate: HTTP 429");
}

}  // namespace
}  // namespace kivra
