#include "kivra_session.h"

#include <sstream>
#include <stdexcept>

#include "plain.h"

namespace kivra::e2e {

KivraSession::KivraSession(const XSession::Options& options) : session(options) { startKivra(); }

void KivraSession::startKivra() {
  session.startKivra();
  // The dictionaries are read in the background, the first time for the index that is kept then; in
  // the English layout, since the Russian one is selected by the first correction.
  constexpr std::chrono::seconds patience(60);
  const auto corrects = [this](const char* typed, const char* expected) {
    window.clear();
    typist.type(typed);
    return window.textAfter(expected) == expected;
  };
  if (!waitFor([&] { return corrects("ghbdtn ", "привет "); }, patience) ||
      !waitFor([&] { return corrects("hello ", "hello "); }, patience)) {
    throw std::runtime_error("Kivra corrects nothing: " + window.text() + session.kivraLog());
  }
  typist.selectGroup(0);
  window.clear();
}

std::string embeddedResult(const std::string& typed) {
  std::istringstream input(typed);
  std::ostringstream output;
  std::ostringstream log;
  desk::typePlain(input, output, log, {});
  return output.str();
}

}  // namespace kivra::e2e
