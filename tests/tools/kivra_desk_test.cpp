// The program kivra-desk as it is called from a shell.

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <string>

#include "tools/shell_outcome.h"

namespace kivra::desk {
namespace {

/// Runs the program with arguments and redirections in the shell's notation.
Outcome run(const std::string& arguments) { return outcomeOf(KIVRA_DESK_PROGRAM " " + arguments); }

constexpr auto errorsOnly = " </dev/null 2>&1 >/dev/null";

TEST(KivraDesk, SaysWhatIsWrongWithCallsThatItDoesNotKnow) {
  for (const std::string arguments :
       {"--fly", "one two", "--source", "--plain --source fr", "--source ru", "--trace", "-x"}) {
    const auto [status, output] = run(arguments + errorsOnly);
    EXPECT_EQ(status, 2) << arguments;
    EXPECT_TRUE(output.starts_with("kivra-desk: ")) << output;
    EXPECT_TRUE(output.ends_with("Try 'kivra-desk --help'.\n")) << output;
  }
}

TEST(KivraDesk, ShowsItsUsageWhenAskedFor) {
  for (const std::string argument : {"--help", "-h"}) {
    const auto [status, output] = run(argument + " </dev/null 2>/dev/null");
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(output.starts_with("Usage: kivra-desk ")) << output;
  }
  EXPECT_EQ(run("--version 2>/dev/null").output, "kivra-desk " KIVRA_VERSION "\n");
}

TEST(KivraDesk, SaysWhichFileItCannotRead) {
  for (const std::string mode : {"", "--plain "}) {
    for (const std::string file : {"/nowhere/at.all", "/"}) {
      const auto [status, output] = run(mode + file + errorsOnly);
      EXPECT_EQ(status, 1) << mode << file;
      EXPECT_TRUE(output.starts_with("kivra-desk: cannot read " + file + ": ")) << output;
    }
  }
}

TEST(KivraDesk, EndsWithTheScriptsStatus) {
  const auto good = run("- <<'END'\n# a\n{\"op\":\"key\",\"code\":0}\nEND\n");
  EXPECT_EQ(good.status, 0);
  EXPECT_EQ(good.output, "{\"passed\":0}\n");
  const auto bad = run("<<'END'\n{\"op\":\"key\",\"code\":0}\n\n{\"op\":\"fly\"}\nEND\n");
  EXPECT_EQ(bad.status, 2);
  EXPECT_TRUE(bad.output.starts_with("{\"passed\":0}\n{\"error\":")) << bad.output;
  EXPECT_TRUE(bad.output.ends_with(",\"line\":3}\n")) << bad.output;
}

TEST(KivraDesk, KeepsItsTraceApartFromTheText) {
  EXPECT_EQ(run("--plain --trace 2>/dev/null <<'END'\nios \nEND\n").output, "iOS \n");
  EXPECT_TRUE(run("--plain --trace 2>&1 >/dev/null <<'END'\nios \nEND\n")
                  .output.starts_with(R"({"post":"key","code":51,"down":true)"));
}

TEST(KivraDesk, ShowsItsSample) {
  const auto [status, output] = run("--sample");
  EXPECT_EQ(status, 0);
  for (const auto* line : {"ghbdtn          →  привет", "Ghbdtn2024!     →  Ghbdtn2024!"}) {
    EXPECT_NE(output.find(line), std::string::npos) << output;
  }
}

/// The program with both its ends in our hands.
class Conversation {
 public:
  explicit Conversation(const char* argument) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return;
    end_ = ends[0];
    child_ = fork();
    if (child_ != 0) {
      close(ends[1]);
      return;
    }
    dup2(ends[1], STDIN_FILENO);
    dup2(ends[1], STDOUT_FILENO);
    execl(KIVRA_DESK_PROGRAM, KIVRA_DESK_PROGRAM, argument, nullptr);
    _exit(127);
  }
  ~Conversation() {
    close(end_);
    if (child_ <= 0) return;
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  /// What comes back, up to a line break, while the program's input stays open.
  std::string answerTo(const std::string& line) {
    if (write(end_, line.data(), line.size()) < 0) return "not taken";
    std::string answer;
    char byte = 0;
    pollfd readable{.fd = end_, .events = POLLIN, .revents = 0};
    constexpr int patience = 60'000;
    while (!answer.ends_with('\n') && poll(&readable, 1, patience) == 1 &&
           read(end_, &byte, 1) == 1) {
      answer += byte;
    }
    return answer;
  }

 private:
  int end_ = -1;
  pid_t child_ = -1;
};

TEST(KivraDesk, AnswersEachLineBeforeTheNextIsTyped) {
  Conversation plain("--plain");
  EXPECT_EQ(plain.answerTo("ios 1\n"), "iOS 1\n");
  EXPECT_EQ(plain.answerTo("\n"), "\n");
  EXPECT_EQ(plain.answerTo("2\n"), "2\n");
  Conversation script("-");
  EXPECT_EQ(script.answerTo("{\"op\":\"key\",\"code\":0}\n"), "{\"passed\":0}\n");
  EXPECT_EQ(script.answerTo("{\"op\":\"key\",\"code\":1}\n"), "{\"passed\":1}\n");
}

}  // namespace
}  // namespace kivra::desk
