#include "kivra_session.h"

#include <sstream>
#include <stdexcept>

#include "plain.h"

namespace kivra::e2e {

namespace {

std::string hex(const std::string& bytes) {
  constexpr const char* digits = "0123456789abcdef";
  std::string result;
  for (const auto byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    result += {digits[value >> 4], digits[value & 0xF]};
  }
  return result;
}

}  // namespace

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

void storeReplacement(XSession& session, const std::string& pattern,
                      const std::string& replacement) {
  const auto entries = R"([{"id":"8C1C0C5E-6C0F-4B0E-9C5B-0F6B5D2F0A11","pattern":")" + pattern +
                       R"(","replacement":")" + replacement + R"("}])";
  session.run({KIVRA_DEFAULTS, "write", "kivra.replacements", "-data", hex(entries)});
}

std::string embeddedResult(const std::string& typed) {
  std::istringstream input(typed);
  std::ostringstream output;
  std::ostringstream log;
  desk::typePlain(input, output, log, {});
  return output.str();
}

}  // namespace kivra::e2e
