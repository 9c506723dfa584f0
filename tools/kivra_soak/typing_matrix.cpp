// Words with a correction in each, at every pace, in programs on several servers: a table.
// Usage: typing-matrix [WORDS [xorg|xvnc|sway [PROGRAM]]]

#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>

#include "sway_matrix.h"
#include "x11_matrix.h"

int main(int count, char** values) {
  using kivra::e2e::XServer;
  try {
    const auto words = count > 1 ? std::stoi(values[1]) : 1000;
    const std::string server = count > 2 ? values[2] : "";
    const std::string program = count > 3 ? values[3] : "";
    const auto isAsked = [&](const char* name) { return server.empty() || server == name; };
    auto isGood = true;
    if (isAsked("xorg")) isGood = kivra::soak::fillX11(XServer::Kind::xorg, words) && isGood;
    if (isAsked("xvnc")) isGood = kivra::soak::fillX11(XServer::Kind::xvnc, words) && isGood;
    if (isAsked("sway")) isGood = kivra::soak::fillSway(words, program) && isGood;
    return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const std::exception& error) {
    std::cerr << "typing-matrix: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
}
