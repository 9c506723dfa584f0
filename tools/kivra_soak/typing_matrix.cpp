// Words with a correction in each, at every pace, in three programs on two servers: a table.
// Usage: typing-matrix [WORDS [xorg|xvnc]]

#include <cstdlib>
#include <functional>
#include <iomanip>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>

#include "application_session.h"
#include "kivra_session.h"
#include "test_window.h"
#include "wrong_words.h"

namespace {

using namespace std::chrono_literals;
using kivra::e2e::ApplicationSession;
using kivra::e2e::WordCount;
using kivra::e2e::XServer;

// Editors fall behind what comes at a few ms a key, and read the whole of a long line anew for
// each.
constexpr auto patience = 60s;
constexpr int wordsInALine = 10;

std::string linesOf(std::string words) {
  auto space = words.find(' ');
  for (int i = 1; space != std::string::npos; ++i, space = words.find(' ', space + 1)) {
    if (i % wordsInALine == 0) words[space] = '\n';
  }
  return words;
}

/// A program to type in: empties its text, and answers it.
struct Program {
  const char* name;
  std::function<void()> clear;
  std::function<std::string(const std::string& expected)> text;
};

class Matrix {
 public:
  Matrix(XServer::Kind server, int words)
      : desktop_({.server = {.kind = server}}),
        server_(server == XServer::Kind::xorg ? "Xorg" : "Xvnc"),
        words_(words) {
    desktop_.startKivra();
  }

  bool run() {
    auto isGood = true;
    {
      kivra::e2e::TestWindow window(desktop_.session.display());
      isGood = fill({.name = "test window",
                     .clear = [&] { window.clear(); },
                     .text = [&](const auto& expected) { return window.textAfter(expected); }});
    }
    desktop_.openGtkEditor();
    isGood = fill(editor("GTK")) && isGood;
    desktop_.openQt6Editor();
    return fill(editor("Qt 6")) && isGood;
  }

 private:
  Program editor(const char* name) {
    return {.name = name,
            .clear =
                [this] {
                  desktop_.press("ctrl+a");
                  desktop_.press("BackSpace");
                },
            .text =
                [this](const std::string& expected) {
                  std::string text;
                  kivra::e2e::waitFor(
                      [&] {
                        text = desktop_.copyAll();
                        return text == expected;
                      },
                      patience);
                  return text;
                }};
  }

  bool fill(const Program& program) {
    auto isGood = true;
    for (const auto pace : {0ms, 1ms, 2ms, 3ms, 5ms, 10ms, 30ms}) {
      for (const auto isRolling : {false, true}) {
        if (pace == 0ms && isRolling) continue;
        isGood = fillCell(program, pace, isRolling) && isGood;
      }
    }
    return isGood;
  }

  bool fillCell(const Program& program, std::chrono::milliseconds pace, bool isRolling) {
    const auto typed = linesOf(kivra::e2e::wrongWords(words_));
    const auto expected = kivra::e2e::embeddedResult(typed);
    const auto locks = typist_.locks();
    typist_.setPace(10ms, 10ms);
    program.clear();
    std::this_thread::sleep_for(300ms);
    typist_.selectGroup(0);
    type(typed, pace, isRolling);
    const auto count = kivra::e2e::compareWords(program.text(expected), expected);
    const auto isClean = kivra::e2e::waitFor([&] { return !typist_.isAnyKeyDown(); }, 1s) &&
                         typist_.locks() == locks;
    const auto mayStayWhole = pace < 2ms;
    const auto isGood = isClean && count.wrong == 0 && (mayStayWhole || count.whole == 0);
    print(program.name, pace, isRolling, count, isClean, isGood);
    return isGood;
  }

  /// At no time a key, five words at once.
  void type(const std::string& text, std::chrono::milliseconds pace, bool isRolling) {
    typist_.setHand(pace, isRolling);
    if (pace > 0ms) return typist_.type(text);
    constexpr int atOnce = 5;
    std::size_t begin = 0;
    while (begin < text.size()) {
      auto end = begin;
      for (int i = 0; i < atOnce && end < text.size(); ++i)
        end = text.find_first_of(" \n", end) + 1;
      typist_.type(text.substr(begin, end - begin));
      std::this_thread::sleep_for(200ms);
      begin = end;
    }
  }

  void print(const char* program, std::chrono::milliseconds pace, bool isRolling,
             const WordCount& count, bool isClean, bool isGood) const {
    std::cout << std::left << std::setw(6) << server_ << std::setw(13) << program << std::right
              << std::setw(3) << pace.count() << " ms  " << (isRolling ? "rolling" : "       ")
              << std::setw(7) << count.right << " corrected" << std::setw(6) << count.whole
              << " whole" << std::setw(6) << count.wrong << " wrong"
              << (isClean ? "" : "  a key or lock is left on") << (isGood ? "" : "  BAD: ")
              << (isGood ? "" : count.firstDifference) << std::endl;
  }

  ApplicationSession desktop_;
  kivra::e2e::Typist typist_{desktop_.session};
  std::string server_;
  int words_;
};

}  // namespace

int main(int count, char** values) {
  try {
    const auto words = count > 1 ? std::stoi(values[1]) : 1000;
    const std::string only = count > 2 ? values[2] : "";
    const auto isXorgGood = only == "xvnc" || Matrix(XServer::Kind::xorg, words).run();
    const auto isXvncGood = only == "xorg" || Matrix(XServer::Kind::xvnc, words).run();
    return isXorgGood && isXvncGood ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const std::exception& error) {
    std::cerr << "typing-matrix: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
}
