#include "kivra_in_sway.h"

#include <linux/input-event-codes.h>

#include <stdexcept>

#include "x_session.h"

namespace kivra::e2e {

using namespace std::chrono_literals;

KivraInSway::KivraInSway(const std::string& moreConfig)
    : sway({.moreConfig = moreConfig, .environment = {{"XDG_CACHE_HOME", KIVRA_E2E_CACHE}}}) {
  bus_.switchAccessibilityOn();
  compositor_.roundtrip();
}

void KivraInSway::startKivra(const std::vector<std::string>& command) {
  kivra_ = sway.start(command, "kivra.log");
  // The dictionaries are read in the background, the first time for the index that is kept then.
  TextWindow window;
  const auto corrects = [&](const char* typed, const char* expected) {
    window.clear();
    hand.type(typed);
    return window.textAfter(expected) == expected;
  };
  // The second brings back the layout that the first one's correction has left.
  if (!waitFor([&] { return corrects("ghbdtn ", "привет "); }, 60s) ||
      !corrects("hello ", "hello ")) {
    throw std::runtime_error("Kivra corrects nothing: " + window.text() + kivraLog());
  }
}

std::unique_ptr<ChildProcess> KivraInSway::open(const std::vector<std::string>& command,
                                                const std::string& application,
                                                const std::string& log) {
  auto opened = sway.start(command, log);
  if (!getsFocus(application)) throw std::runtime_error(application + " does not get the focus");
  return opened;
}

bool KivraInSway::getsFocus(const std::string& application) {
  return waitFor([&] {
    compositor_.dispatch();
    return toplevels_.activeApplication().value_or("").starts_with(application);
  });
}

bool KivraInSway::mends(const std::function<bool()>& isMended) {
  return waitFor(
      [&] {
        hand.type("ghbdtn ");
        return waitFor(isMended, 1s);
      },
      20s);
}

void KivraInSway::chord(const std::vector<std::uint16_t>& keys) {
  for (const auto key : keys) hand.press(key);
  for (auto key = keys.rbegin(); key != keys.rend(); ++key) hand.release(*key);
}

std::string KivraInSway::copyAll() {
  run({"wl-copy", "--clear"});
  chord({KEY_LEFTCTRL, KEY_A});
  chord({KEY_LEFTCTRL, KEY_C});
  std::string text;
  waitFor([&] { return !(text = run({"timeout", "2", "wl-paste", "-n"})).empty(); }, 2s);
  return text;
}

std::string KivraInSway::written(const std::string& file, const std::string& expected) const {
  waitFor([&] { return sway.readFile(file) == expected; }, 5s);
  return sway.readFile(file);
}

}  // namespace kivra::e2e
