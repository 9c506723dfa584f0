// Whatever keys come, the text on the screen is what a simple model of the keyboard says.

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <array>
#include <string>

#include "app/kivra_app.h"
#include "platform/embedded/embedded_desktop.h"

namespace kivra {
namespace {

using embedded::EmbeddedDesktop;
using embedded::Json;

constexpr std::array<std::uint16_t, 12> letterKeys = {5, 4, 11, 2, 17, 45, 0, 1, 43, 33, 9, 47};

struct TypingRun {
  TypingRun() {
    desktop.spellChecker.setDictionary("ru", {"привет", "мир", "это", "дом"},
                                       {{"превет", "привет"}, {"дмо", "дома"}});
    desktop.spellChecker.setDictionary("en", {"hello", "the", "sad"}, {{"helo", "hello"}});
    app.delegate->applicationDidFinishLaunching();
  }

  bool press(std::uint16_t keyCode, std::uint64_t flags = 0) {
    return desktop.events.send({.keyCode = keyCode, .flags = flags});
  }
  void tapShift() {
    desktop.events.send(
        {.type = EventType::flagsChanged, .keyCode = 56, .flags = event_flags::shift});
    desktop.events.send({.type = EventType::flagsChanged, .keyCode = 56});
  }
  std::string text() { return desktop.application.front().field.text(); }
  const UndoStack::Action* lastAction() {
    const auto& last = app.services.undoStack.last();
    return last ? &*last : nullptr;
  }

  EmbeddedDesktop desktop{nullptr, nullptr};
  KivraApp app{desktop.platform()};
};

struct Key {
  std::uint16_t code;
  bool shift;
};

rc::Gen<std::vector<Key>> words() {
  const auto letter = rc::gen::pair(rc::gen::elementOf(letterKeys),
                                    rc::gen::weightedElement<bool>({{5, false}, {1, true}}));
  const auto other =
      rc::gen::pair(rc::gen::element<std::uint16_t>(49, 49, 49, 36, 48, 51, 53, 123, 18, 50),
                    rc::gen::just(false));
  const auto mark = rc::gen::pair(rc::gen::just<std::uint16_t>(44), rc::gen::arbitrary<bool>());
  return rc::gen::container<std::vector<Key>>(rc::gen::map(
      rc::gen::weightedOneOf<std::pair<std::uint16_t, bool>>({{8, letter}, {2, other}, {1, mark}}),
      [](const auto& pair) {
        return Key{pair.first, pair.second};
      }));
}

void play(TypingRun& run, const std::vector<Key>& keys) {
  for (const auto& key : keys) run.press(key.code, key.shift ? event_flags::shift : 0);
}

RC_GTEST_PROP(Typing, SwitchedOffItIsAnOrdinaryKeyboard, ()) {
  const auto keys = *words();
  TypingRun off;
  off.app.services.settings().isEnabled.set(false);
  play(off, keys);
  EmbeddedDesktop bare(nullptr, nullptr);
  for (const auto& key : keys) {
    bare.events.send({.keyCode = key.code, .flags = key.shift ? event_flags::shift : 0});
  }
  RC_ASSERT(off.text() == bare.application.front().field.text());
}

RC_GTEST_PROP(Typing, AnUndoRightAfterAChangeGivesBackWhatWasTyped, ()) {
  const auto keys = *words();
  TypingRun run;
  run.app.services.settings().extendedRules.set(*rc::gen::arbitrary<bool>());
  EmbeddedDesktop bare(nullptr, nullptr);
  for (const auto& key : keys) {
    const auto flags = key.shift ? event_flags::shift : 0;
    // Both start each key from the same text and source, so that one step is compared at a time.
    embedded::FrontApplication front;
    front.field = run.desktop.application.front().field;
    bare.application.focus(front);
    bare.inputSources.select(run.desktop.inputSources.copyCurrentKeyboardInputSource()->id);
    bare.events.send({.keyCode = key.code, .flags = flags});
    if (run.press(key.code, flags)) {
      RC_ASSERT(run.text() == bare.application.front().field.text());
      continue;
    }
    RC_ASSERT(run.lastAction() != nullptr);
    run.tapShift();
    run.tapShift();
    RC_ASSERT(run.text() == bare.application.front().field.text());
    RC_ASSERT(run.lastAction() == nullptr);
    run.desktop.time.runFor(std::chrono::seconds(1));
  }
}

RC_GTEST_PROP(Typing, ARolledBackWordIsNeverChangedAgain, ()) {
  const auto keys = *words();
  TypingRun run;
  for (int round = 0; round < 2; ++round) {
    for (const auto& key : keys) {
      const auto passed = run.press(key.code, key.shift ? event_flags::shift : 0);
      if (passed) continue;
      RC_ASSERT(round == 0);
      run.tapShift();
      run.tapShift();
      run.desktop.time.runFor(std::chrono::seconds(1));
      run.press(key_codes::space);  // ends the run of words, so that phrases do not differ
    }
    run.press(key_codes::escape);
    run.desktop.inputSources.select("us");
    run.desktop.application.focus({});
  }
}

}  // namespace
}  // namespace kivra
