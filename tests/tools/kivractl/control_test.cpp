#include "control.h"

#include <gtest/gtest.h>

#include "platform/embedded/embedded_defaults_database.h"

namespace kivra::control {

void PrintTo(const Reply& reply, std::ostream* stream) {
  *stream << reply.status << " \"" << reply.output << "\" \"" << reply.message << '"';
}

namespace {

using Words = std::vector<std::string>;

/// The commands on stores in memory, of a program that runs or, without `running_`, of none.
class ControlTest : public testing::Test {
 protected:
  Reply run(const Words& words, const std::string& input = "") {
    const auto replacements = [this]() -> ReplacementStore& { return replacements_; };
    const auto identifierOf = [](std::string_view name) {
      return name == "xterm" ? "com.apple.Terminal" : std::string(name);
    };
    const auto namesOf = [](std::string_view entry) {
      return entry == "com.apple.Terminal" ? Words{"foot", "xterm"} : Words();
    };
    return carryOut({.settings = settings_,
                     .exceptions = exceptions_,
                     .replacements = replacements,
                     .frontmostIdentifier = [] { return "org.example.Editor"; },
                     .identifierOf = identifierOf,
                     .namesOf = namesOf,
                     .isSaved = [this] { return isSaved_; },
                     .running = isRunning_ ? &running_ : nullptr},
                    {words, input});
  }

  /// A command that fails says so and changes nothing that is stored.
  void expectFailure(int status, const Words& words, const std::string& input = "") {
    const auto before = database_.dictionaryRepresentation();
    const auto reply = run(words, input);
    EXPECT_EQ(reply.status, status) << words.front();
    EXPECT_FALSE(reply.message.empty());
    EXPECT_EQ(database_.dictionaryRepresentation(), before) << words.front();
  }

  std::vector<std::string> done_;
  bool isSaved_ = true;
  bool isRunning_ = true;
  embedded::EmbeddedDefaultsDatabase database_;
  UserDefaults defaults_{database_};
  SettingsStore settings_{defaults_};
  ExceptionStore exceptions_{defaults_};
  ReplacementStore replacements_{defaults_};
  RunningProgram running_ = {
      .showSettings = [this] { done_.push_back("settings"); },
      .quit = [this] { done_.push_back("quit"); },
      .setEnabled = [this](bool isEnabled) { done_.push_back(isEnabled ? "on" : "off"); },
      .pause = [this](std::chrono::seconds s) { done_.push_back(std::to_string(s.count())); },
      .layouts =
          [] {
            return std::vector<std::pair<std::string, std::string>>{{"us", "en"}, {"ru", "ru"}};
          },
      .state =
          [] {
            return State{
                .isIntercepting = true, .missing = {"a layout"}, .diagnosis = {"session: X11"}};
          }};
};

TEST_F(ControlTest, HasTheRunningProgramDoWhatOnlyItCan) {
  for (const auto& words : {Words{"on"},
                            {"off"},
                            {"settings"},
                            {"quit"},
                            {"pause", "90s"},
                            {"pause", "2"},
                            {"pause", "24h"}}) {
    EXPECT_EQ(run(words), Reply()) << words.front();
  }
  EXPECT_EQ(done_, (Words{"on", "off", "settings", "quit", "90", "120", "86400"}));
  EXPECT_EQ(run({"layouts"}).output, R"([{"id":"us","language":"en"},{"id":"ru","language":"ru"}])"
                                     "\n");
  for (const auto* time : {"25h", "0", "x", "1d", "99999999999", "-1", ""}) {
    expectFailure(Reply::wrongUsage, {"pause", time});
  }
}

TEST_F(ControlTest, StatusTellsHowTheProgramFares) {
  EXPECT_EQ(run({"status"}).output,
            "Kivra runs\nwords are mended: on\nthe keyboard is watched\nmissing: a "
            "layout\nsession: X11\n");
  settings_.isEnabled.set(false);
  isRunning_ = false;
  EXPECT_EQ(
      run({"status", "--json"}),
      Reply(
          {.status = Reply::notRunning,
           .output =
               R"({"enabled":false,"intercepting":false,"missing":[],"running":false,"session":[]})"
               "\n"}));
}

TEST_F(ControlTest, WorksOnStoredValuesWhileNoneRuns) {
  isRunning_ = false;
  EXPECT_EQ(run({"off"}), Reply());
  EXPECT_FALSE(settings_.isEnabled());
  for (const auto& words : {Words{"settings"}, {"quit"}, {"pause", "1h"}, {"layouts"}}) {
    expectFailure(Reply::notRunning, words);
  }
  isSaved_ = false;
  EXPECT_EQ(run({"on"}).status, Reply::failed);
}

TEST_F(ControlTest, KnowsItsCommands) {
  for (const auto& words : {Words{},
                            {"fly"},
                            {"on", "off"},
                            {"--fly"},
                            {"on", "-x"},
                            {"pause"},
                            {"learned", "fly"},
                            {"learned", "add"},
                            {"learned", "forget"},
                            {"skip", "fly"},
                            {"skip", "add"},
                            {"skip", "list", "x"},
                            {"dictionary", "fly"},
                            {"dictionary", "add", "ab"},
                            {"dictionary", "add", "ab", "c", "d"},
                            {"dictionary", "remove"},
                            {"dictionary", "import"},
                            {"dictionary", "import", "file"},
                            {"dictionary", "export", "file.doc"}}) {
    EXPECT_EQ(run(words).status, Reply::wrongUsage) << (words.empty() ? "" : words.back());
  }
}

TEST_F(ControlTest, LearnsAndForgetsWords) {
  EXPECT_EQ(run({"learned", "add", "Севодня", "--", "--json"}), Reply());
  EXPECT_EQ(run({"learned"}).output, "--json\nсеводня\n");
  EXPECT_EQ(run({"learned", "--json"}).output, "[\"--json\",\"севодня\"]\n");
  EXPECT_TRUE(exceptions_.contains("севодня")) << "taken up at once";
  expectFailure(Reply::failed, {"learned", "add", "другое", " "});
  expectFailure(Reply::failed, {"learned", "forget", "севодня", "никогда"});
  EXPECT_EQ(run({"learned", "forget", "СЕВОДНЯ", "--", "--json"}), Reply());
  EXPECT_EQ(run({"learned"}), Reply());
  EXPECT_EQ(database_.objectForKey("kivra.exceptions"), DefaultsValue(Words()));
}

TEST_F(ControlTest, AddsExcludedApplicationsToTheDefaults) {
  const auto before = settings_.skipBundleIDs();
  EXPECT_TRUE(run({"skip"}).output.find("com.apple.Terminal\tfoot, xterm\n") != std::string::npos);
  EXPECT_EQ(run({"skip", "add", "XTerm", "xterm", "org.gnome.gedit"}), Reply());
  auto after = before;
  after.insert(after.end(), {"XTerm", "org.gnome.gedit"});
  EXPECT_EQ(settings_.skipBundleIDs(), after);
  expectFailure(Reply::failed, {"skip", "remove", "org.gnome.gedit", "nobody"});
  EXPECT_EQ(run({"skip", "remove", "ORG.gnome.gedit", "XTerm"}), Reply());
  EXPECT_EQ(settings_.skipBundleIDs(), before);
  EXPECT_EQ(run({"skip", "remove", "xterm"}), Reply()) << "as this desktop calls it";
  EXPECT_EQ(settings_.skipBundleIDs().size(), before.size() - 1);
  EXPECT_EQ(run({"skip", "front"}).output, "org.example.Editor\n");
}

TEST_F(ControlTest, ChangesTheDictionary) {
  EXPECT_EQ(run({"dictionary", "add", " адр ", "ул. Мира, 1"}), Reply());
  EXPECT_EQ(run({"dictionary", "add", "IOS", "айос"}), Reply());
  EXPECT_EQ(run({"dictionary"}).output,
            "vexor\tVEXOR\nvexor energy\tVEXOR ENERGY\nios\tайос\nадр\tул. Мира, 1\n");
  EXPECT_EQ(run({"dictionary", "remove", "Vexor  Energy", "vexor", "ios"}), Reply());
  EXPECT_EQ(run({"dictionary", "list", "--json"}).output,
            "[{\"pattern\":\"адр\",\"replacement\":\"ул. Мира, 1\"}]\n");
  expectFailure(Reply::failed, {"dictionary", "remove", "адр", "нет"});
  expectFailure(Reply::failed, {"dictionary", "add", "а", "б"});
  expectFailure(Reply::failed, {"dictionary", "add", "аб", " "});
}

TEST_F(ControlTest, ImportsAllOrNothing) {
  const auto* good = "адр\tул. Мира, 1\nIOS\tайос\nvexor\tVEXOR\n";
  expectFailure(Reply::failed, {"dictionary", "import", "f.tsv"}, std::string(good) + "bad\n");
  const auto bad = run({"dictionary", "import", "f.tsv"}, "bad\nab\tc\nab\td\n");
  EXPECT_EQ(bad.message,
            "f.tsv:1: wanted: pattern, one tab, replacement\n"
            "f.tsv:3: the pattern stands in line 2 too\n"
            "nothing was imported");
  const auto before = database_.dictionaryRepresentation();
  EXPECT_EQ(run({"dictionary", "import", "--dry-run", "f.tsv"}, good).output,
            "1 entries would be added, 1 would be changed\n");
  EXPECT_EQ(database_.dictionaryRepresentation(), before);
  EXPECT_EQ(run({"dictionary", "import", "--json", "f.tsv"}, good).output,
            "{\"added\":1,\"bad\":[],\"changed\":1,\"leftOut\":[]}\n");
  EXPECT_EQ(replacements_.lookup("адр"), "ул. Мира, 1");
  EXPECT_EQ(replacements_.lookup("ios"), "айос");
  const auto yaml = run({"dictionary", "import", "--yaml", "-"},
                        "matches:\n  - trigger: пр\n    replace: привет\n  - regex: x\n");
  EXPECT_EQ(yaml, (Reply{Reply::done, "1 entries added, 0 changed\n",
                         "-:4: left out: a match with regex"}));
  EXPECT_EQ(run({"dictionary", "export"}).output, run({"dictionary", "list"}).output);
}

}  // namespace
}  // namespace kivra::control
