#include "typing_table.h"

#include <iomanip>
#include <iostream>
#include <thread>

#include "kivra_session.h"
#include "wrong_words.h"

namespace kivra::soak {

namespace {

using namespace std::chrono_literals;

// Editors read the whole of a long line anew for each letter.
constexpr int wordsInALine = 10;

std::string linesOf(std::string words) {
  auto space = words.find(' ');
  for (int i = 1; space != std::string::npos; ++i, space = words.find(' ', space + 1)) {
    if (i % wordsInALine == 0) words[space] = '\n';
  }
  return words;
}

/// At no time a key, five words at once.
void type(Hands& hands, const std::string& text, std::chrono::milliseconds pace, bool isRolling) {
  if (pace > 0ms) return hands.type(text, pace, isRolling);
  constexpr int atOnce = 5;
  std::size_t begin = 0;
  while (begin < text.size()) {
    auto end = begin;
    for (int i = 0; i < atOnce && end < text.size(); ++i) end = text.find_first_of(" \n", end) + 1;
    hands.type(text.substr(begin, end - begin), pace, isRolling);
    std::this_thread::sleep_for(200ms);
    begin = end;
  }
}

bool fillRow(const std::string& server, const Program& program, Hands& hands, int words,
             std::chrono::milliseconds pace, bool isRolling) {
  const auto typed = linesOf(e2e::wrongWords(words));
  const auto expected = e2e::embeddedResult(typed);
  hands.prepare();
  program.clear();
  std::this_thread::sleep_for(300ms);
  type(hands, typed, pace, isRolling);
  const auto count = e2e::compareWords(program.text(expected), expected);
  const auto isClean = hands.areOffTheKeys();
  const auto mayStayWhole = pace < 2ms;
  const auto isGood = isClean && count.wrong == 0 && (mayStayWhole || count.whole == 0);
  std::cout << std::left << std::setw(6) << server << std::setw(13) << program.name << std::right
            << std::setw(3) << pace.count() << " ms  " << (isRolling ? "rolling" : "       ")
            << std::setw(7) << count.right << " corrected" << std::setw(6) << count.whole
            << " whole" << std::setw(6) << count.wrong << " wrong"
            << (isClean ? "" : "  a key or lock is left on") << (isGood ? "" : "  BAD: ")
            << (isGood ? "" : count.firstDifference) << std::endl;
  return isGood;
}

}  // namespace

bool fillTable(const std::string& server, const Program& program, Hands& hands, int words,
               const Paces& paces) {
  auto isGood = true;
  for (const auto pace : paces) {
    for (const auto isRolling : {false, true}) {
      if (pace == 0ms && isRolling) continue;
      isGood = fillRow(server, program, hands, words, pace, isRolling) && isGood;
    }
  }
  return isGood;
}

}  // namespace kivra::soak
