#include "sample.h"

#include <chrono>
#include <string>
#include <vector>

#include "session.h"

namespace kivra::desk {

namespace {

/// A step of the user's; the names say what the hands do.
enum class Gesture { doubleTapShift, pressPause };

struct Step {
  std::string typed;
  std::vector<Gesture> gestures;
  std::string then;
};

struct Scene {
  const char* title;
  const char* source;
  const char* application;
  Step step;
};

const std::vector<Scene>& scenes() {
  using enum Gesture;
  constexpr auto editor = "org.example.Editor";
  static const std::vector<Scene> all = {
      {"A word in the wrong layout", "us", editor, {"ghbdtn ", {}, ""}},
      {"The same the other way", "ru", editor, {"цщкдв ", {}, ""}},
      {"A word of one letter", "us", editor, {"z ", {}, ""}},
      {"Two capitals at the start", "ru", editor, {"ПРивет ", {}, ""}},
      {"A close misspelling", "ru", editor, {"карова ", {}, ""}},
      {"An entry of the dictionary", "us", editor, {"ios ", {}, ""}},
      {"The same in the other layout", "ru", editor, {"vexor ", {}, ""}},
      {"Double tap of Shift takes it back", "us", editor, {"ghbdtn ", {doubleTapShift}, ""}},
      {"... and the word is left alone then",
       "us",
       editor,
       {"ghbdtn ", {doubleTapShift}, "ghbdtn "}},
      {"Pause switches a word by hand", "us", editor, {"zyf", {pressPause}, " "}},
      {"A password stays as it is", "us", editor, {"Ghbdtn2024! ", {}, ""}},
      {"So does a terminal", "us", "com.apple.Terminal", {"ghbdtn ", {}, ""}},
  };
  return all;
}

void tapShift(Session& session) {
  auto& events = session.desktop().events;
  events.send({.type = EventType::flagsChanged,
               .keyCode = key_codes::leftShift,
               .flags = event_flags::shift});
  events.send({.type = EventType::flagsChanged, .keyCode = key_codes::leftShift});
  session.desktop().time.runFor(std::chrono::milliseconds(100));
}

void perform(Session& session, Gesture gesture) {
  if (gesture == Gesture::doubleTapShift) {
    tapShift(session);
    tapShift(session);
  } else {
    session.desktop().events.send({.keyCode = key_codes::pause});
  }
}

/// What the typed keys give where nobody mends anything.
std::string unmended(const Scene& scene) {
  Session bare(nullptr, nullptr);
  bare.desktop().inputSources.select(scene.source);
  bare.typist().type(scene.step.typed + scene.step.then);
  return bare.desktop().application.front().field.text();
}

std::string mended(const Scene& scene) {
  Session session(nullptr, nullptr);
  session.desktop().inputSources.select(scene.source);
  session.desktop().application.front().identifier = scene.application;
  session.app();
  session.typist().type(scene.step.typed);
  for (const auto gesture : scene.step.gestures) perform(session, gesture);
  session.typist().type(scene.step.then);
  return session.desktop().application.front().field.text();
}

/// Padded to a width in characters; the sample holds none that takes more than one column.
std::string padded(const std::string& text, std::size_t width) {
  std::size_t length = 0;
  for (const auto byte : text) length += (static_cast<unsigned char>(byte) & 0xC0) != 0x80 ? 1 : 0;
  return text + std::string(length < width ? width - length : 0, ' ');
}

}  // namespace

void playSample(std::ostream& output) {
  for (const auto& scene : scenes()) {
    output << padded(scene.title, 38) << padded(unmended(scene), 16) << "→  " << mended(scene)
           << '\n'
           << std::flush;
  }
}

}  // namespace kivra::desk
