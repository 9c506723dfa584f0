#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/defaults/defaults_fixture.h"
#include "tools/shell_outcome.h"

namespace kivra {

namespace {

class KivraDefaults : public ::testing::Test {
 protected:
  KivraDefaults() { setenv("XDG_CONFIG_HOME", directory_.path().c_str(), 1); }

  /// Runs the command with arguments in the shell's notation.
  static Outcome run(const std::string& arguments) {
    return outcomeOf(KIVRA_DEFAULTS_PROGRAM " " + arguments + " 2>&1");
  }

  static void expectStatus(int status, const std::string& arguments) {
    const auto outcome = run(arguments);
    EXPECT_EQ(outcome.status, status) << arguments << ": " << outcome.output;
    EXPECT_EQ(outcome.output.starts_with("kivra-defaults: "), status != 0) << outcome.output;
  }

  TemporaryDirectory directory_;
};

TEST_F(KivraDefaults, WritesAndReadsEveryType) {
  expectStatus(0, "write string 'два \"слова\"'");
  expectStatus(0, "write dash -string -array");
  expectStatus(0, "write yes -bool yes");
  expectStatus(0, "write no -bool 0");
  expectStatus(0, "write empty -array");
  expectStatus(0, "write array -array 'one \"1\"'");
  expectStatus(0, R"(write array -array-add two "$(printf '\n\t\\')x")");
  expectStatus(0, "write added -array-add new");
  expectStatus(0, "write data -data 00fFa0");
  EXPECT_EQ(run("read string"), (Outcome{0, "два \"слова\"\n"}));
  EXPECT_EQ(run("read array"),
            (Outcome{0, "(\n    \"one \\\"1\\\"\",\n    \"two\",\n    \"\\n\\x09\\\\x\"\n)\n"}));
  EXPECT_EQ(run("read"), (Outcome{0,
                                  "added = (\n    \"new\"\n)\n"
                                  "array = (\n    \"one \\\"1\\\"\",\n    \"two\",\n"
                                  "    \"\\n\\x09\\\\x\"\n)\n"
                                  "dash = \"-array\"\n"
                                  "data = <00ffa0>\n"
                                  "empty = (\n)\n"
                                  "no = 0\n"
                                  "string = \"два \\\"слова\\\"\"\n"
                                  "yes = 1\n"}));
}

TEST_F(KivraDefaults, DeletesAKey) {
  expectStatus(0, "write key value");
  expectStatus(0, "delete key");
  EXPECT_EQ(run("read key"), (Outcome{1, "kivra-defaults: no value under \"key\"\n"}));
  EXPECT_EQ(run("read"), (Outcome{0, ""}));
}

TEST_F(KivraDefaults, RefusesBadValuesAndKeepsTheOldOnes) {
  expectStatus(0, "write key -bool true");
  for (const auto* bad : {"-bool maybe", "-data 0", "-data 0g", "-data +1", "-array-add x"}) {
    expectStatus(1, std::string("write key ") + bad);
  }
  expectStatus(1, "delete other");
  EXPECT_EQ(run("read"), (Outcome{0, "key = 1\n"}));
}

TEST_F(KivraDefaults, ReadsAndExtendsTheExcludedApplicationsInForce) {
  const auto inForce = run("read kivra.skipBundleIDs");
  EXPECT_NE(inForce.output.find("    \"com.apple.Terminal\",\n"), std::string::npos);
  expectStatus(0, "write kivra.skipBundleIDs -array-add org.gnome.gedit");
  auto extended = inForce.output;
  extended.replace(extended.rfind("\n)"), 2, ",\n    \"org.gnome.gedit\"\n)");
  EXPECT_EQ(run("read kivra.skipBundleIDs"), (Outcome{0, extended}));
}

TEST_F(KivraDefaults, ExplainsItself) {
  for (const auto* wrong :
       {"", "list", "read a b", "write", "write key", "write key a b", "delete", "write key -bool",
        "write key -date x", "write key -string a b", "--fly"}) {
    expectStatus(2, wrong);
  }
  EXPECT_EQ(run("--version"), (Outcome{0, "kivra-defaults " KIVRA_VERSION "\n"}));
  EXPECT_NE(run("--help").output.find("kivra-defaults write KEY VALUE"), std::string::npos);
}

TEST_F(KivraDefaults, WorksBesideTheRunningProgram) {
  SqliteDefaultsDatabase running(userDefaultsPath(),
                                 [](std::string_view line) { ADD_FAILURE() << line; });
  running.setObject(true, "theirs");
  expectStatus(0, "write ours -array x");
  running.setObject(false, "theirs");
  EXPECT_EQ(run("read"), (Outcome{0, "ours = (\n    \"x\"\n)\ntheirs = 0\n"}));
}

TEST_F(KivraDefaults, TellsWhenNothingCanBeSaved) {
  overwrite(directory_.path() / "kivra", "a file where the directory should be");
  const auto outcome = run("write key value");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.output.find("could not be saved"), std::string::npos) << outcome.output;
}

}  // namespace

}  // namespace kivra
