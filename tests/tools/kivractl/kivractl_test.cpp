// kivractl as it is called from a shell, while no Kivra runs.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "private_bus.h"

namespace kivra {
namespace {

class Kivractl : public testing::Test {
 protected:
  /// What a command of the shell prints, errors as well, with its exit status on the last line.
  std::string shell(const std::string& command) const {
    return e2e::outputOf(
        {"sh", "-c",
         "cd \"$HOME\"; kivractl() { " KIVRACTL " \"$@\"; }; { " + command + "; } 2>&1; echo $?"},
        bus_.environment());
  }

  std::string contents(const std::string& file) const {
    std::ifstream stream(bus_.home() / file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  /// A file with so many replacements.
  void writeReplacements(const std::string& file, int count) const {
    std::ofstream stream(bus_.home() / file);
    for (int i = 0; i < count; ++i) stream << "образец" << i << "\tзамена" << i << '\n';
  }

  e2e::PrivateBus bus_;
};

TEST_F(Kivractl, TellsByItsStatusWhatBecameOfACommand) {
  EXPECT_EQ(shell("kivractl learned add слово && kivractl --json learned"), "[\"слово\"]\n0\n");
  EXPECT_EQ(shell("kivractl learned forget другое"),
            "kivractl: not learned: другое; nothing was forgotten\n1\n");
  EXPECT_EQ(shell("kivractl fly"), "kivractl: unknown command fly\nTry 'kivractl --help'.\n2\n");
  EXPECT_EQ(shell("kivractl --fly"), "kivractl: unknown option --fly\nTry 'kivractl --help'.\n2\n");
  EXPECT_EQ(shell("kivractl pause 1h"), "kivractl: Kivra does not run; `kivra` starts it\n3\n");
  EXPECT_EQ(shell("kivractl --version"), "kivractl " KIVRA_VERSION "\n0\n");
  EXPECT_TRUE(shell("kivractl --help").starts_with("Usage: kivractl "));
  EXPECT_EQ(shell("kivractl learned >/dev/full"), "1\n");
  EXPECT_NE(shell("kivractl why ghbdtn").find("-> привет (retyped"), std::string::npos);
}

TEST_F(Kivractl, ExchangesTheDictionaryWithFiles) {
  EXPECT_EQ(shell("kivractl dictionary export слова.yml"), "0\n");
  EXPECT_TRUE(contents("слова.yml").starts_with("matches:\n  - trigger: \"vexor\"\n"));
  writeReplacements("new.tsv", 3);
  EXPECT_EQ(shell("kivractl dictionary import new.tsv"), "3 entries added, 0 changed\n0\n");
  EXPECT_EQ(shell("kivractl dictionary export --csv - | tail -n 1"), "образец2,замена2\n0\n");
  EXPECT_EQ(shell("kivractl dictionary import nowhere.tsv"),
            "kivractl: cannot read nowhere.tsv: No such file or directory\n1\n");
  EXPECT_EQ(shell("kivractl dictionary import /"), "kivractl: cannot read /: Is a directory\n1\n");
}

// A limit on the size of files stands for a disk that is full.
TEST_F(Kivractl, LosesNothingOnAFullDisk) {
  shell("kivractl dictionary add адр 'ул. Мира'; kivractl dictionary export kept.tsv");
  const auto kept = contents("kept.tsv");
  writeReplacements("large.tsv", 5000);
  constexpr auto full = "trap '' XFSZ; ulimit -f 100; ";
  const auto refused = shell(std::string(full) + "kivractl dictionary import large.tsv");
  EXPECT_TRUE(refused.ends_with("\n1\n")) << refused;
  EXPECT_EQ(shell("kivractl dictionary list"), kept + "0\n");
  EXPECT_EQ(shell("kivractl dictionary import large.tsv"), "5000 entries added, 0 changed\n0\n");
  const auto cut = shell(std::string(full) + "kivractl dictionary export kept.tsv");
  EXPECT_TRUE(cut.ends_with("File too large\n1\n")) << cut;
  EXPECT_EQ(contents("kept.tsv"), kept);
  EXPECT_FALSE(std::filesystem::exists(bus_.home() / "kept.tsv.new"));
}

TEST_F(Kivractl, ImportsAllOrNothingWhenItIsKilled) {
  const auto before = shell("kivractl dictionary list");
  writeReplacements("large.tsv", 5000);
  for (const auto* delay : {"0.01", "0.02", "0.03", "0.04", "0.06", "0.08"}) {
    shell(std::string("timeout -s KILL ") + delay + " " KIVRACTL " dictionary import large.tsv");
    const auto after = shell("kivractl dictionary list");
    EXPECT_TRUE(after == before || after.find("образец4999\tзамена4999\n") != std::string::npos)
        << "killed after " << delay << " s";
  }
}

}  // namespace
}  // namespace kivra
