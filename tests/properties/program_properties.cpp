// Whatever the user does, the program marks what it posts, and what it posts does not move it.

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <string>

#include "session.h"

namespace kivra {
namespace {

using embedded::EmbeddedDesktop;
using embedded::Json;

struct Step {
  enum class Kind { key, modifiers, mouse, source, focus, wait };
  Kind kind;
  std::uint16_t code;
  std::uint64_t flags;
};

void showValue(const Step& step, std::ostream& stream) {
  stream << "{" << static_cast<int>(step.kind) << ", " << step.code << ", " << step.flags << "}";
}

rc::Gen<std::vector<Step>> steps() {
  using enum Step::Kind;
  const auto kind = rc::gen::weightedElement<Step::Kind>(
      {{40, key}, {6, modifiers}, {1, mouse}, {2, source}, {1, focus}, {3, wait}});
  const auto code = rc::gen::weightedOneOf<std::uint16_t>(
      {{4, rc::gen::element<std::uint16_t>(5, 4, 11, 2, 17, 45, 9, 47, 6, 34, 31, 1)},
       {4, rc::gen::element<std::uint16_t>(49, 49, 49, 36, 51, 56, 56, 60, 113, 35)},
       {1, rc::gen::arbitrary<std::uint16_t>()}});
  const auto flags = rc::gen::weightedOneOf<std::uint64_t>(
      {{6, rc::gen::just<std::uint64_t>(0)},
       {2, rc::gen::just(event_flags::shift)},
       {1, rc::gen::element(event_flags::control | event_flags::option, event_flags::command,
                            event_flags::fn | event_flags::shift)},
       {1, rc::gen::arbitrary<std::uint64_t>()}});
  return rc::gen::container<std::vector<Step>>(rc::gen::construct<Step>(kind, code, flags));
}

/// A run that writes down which events were consumed and what was posted and selected.
class Run {
 public:
  explicit Run(bool withTextActions) {
    desktop.spellChecker.setDictionary("ru", {"привет", "мир", "это"}, {{"превет", "привет"}});
    desktop.spellChecker.setDictionary("en", {"hello", "the", "sad"}, {{"helo", "hello"}});
    app.delegate->applicationDidFinishLaunching();
    auto& settings = app.services.settings();
    if (withTextActions) return;
    for (auto* hotkey :
         {&settings.translateHotkey1, &settings.translateHotkey2, &settings.correctHotkey}) {
      hotkey->set({60000, ~event_flags::command});
    }
    settings.translateCombo.set(ModifierCombo::off());
    settings.correctCombo.set(ModifierCombo::off());
  }

  void perform(const Step& step) {
    using enum Step::Kind;
    if (step.kind == source) desktop.inputSources.select(step.code % 2 == 0 ? "us" : "ru");
    if (step.kind == focus) desktop.application.focus({.secure = step.code % 2 == 0, .field = {}});
    if (step.kind == wait) desktop.time.runFor(std::chrono::milliseconds(step.code % 600));
    if (step.kind == key) send({.keyCode = step.code, .flags = step.flags});
    if (step.kind == mouse) send({.type = EventType::rightMouseDown});
    if (step.kind != modifiers) return;
    send({.type = EventType::flagsChanged, .keyCode = step.code, .flags = step.flags});
  }

  /// Everything posted so far, and marked events of every other kind, come once more.
  void echo() {
    const auto effects = done;
    for (const auto& effect : effects) {
      if (!effect.contains("code") || effect["down"] == false) continue;
      desktop.events.send({.keyCode = effect["code"], .flags = effect["flags"], .userData = 19286});
    }
    desktop.events.send({.type = EventType::leftMouseDown, .userData = 19286});
    for (const auto flags : {event_flags::shift, std::uint64_t{0}}) {
      desktop.events.send(
          {.type = EventType::flagsChanged, .keyCode = 56, .flags = flags, .userData = 19286});
    }
    desktop.events.send(
        {.keyCode = 35, .flags = event_flags::control | event_flags::option, .userData = 19286});
  }

  std::vector<Json> done;
  EmbeddedDesktop desktop{[this](const Json& effect) { done.push_back(effect); }, nullptr};
  KivraApp app{desktop.platform()};

 private:
  void send(const Event& event) { done.push_back({{"passed", desktop.events.send(event)}}); }
};

RC_GTEST_PROP(Program, NeverReactsToItsOwnEvents, ()) {
  const auto script = *steps();
  Run plain(false);
  Run echoing(false);
  for (const auto& step : script) {
    plain.perform(step);
    echoing.perform(step);
    echoing.echo();
    RC_ASSERT(echoing.done == plain.done);
  }
}

RC_GTEST_PROP(Program, MarksEveryEventAndReleasesEveryKey, ()) {
  Run run(true);
  run.desktop.application.focus({.field = embedded::TextField("some text")});
  for (const auto& step : *steps()) run.perform(step);
  run.desktop.time.runFor(std::chrono::seconds(5));
  std::optional<Json> down;
  for (auto effect : run.done) {
    if (!effect.contains("post")) continue;
    RC_ASSERT(effect["marker"] == 19286);
    RC_ASSERT(effect["down"] == !down.has_value());
    if (down) {
      effect["down"] = true;
      RC_ASSERT(effect == *down);
      down.reset();
    } else {
      down = effect;
    }
  }
  RC_ASSERT(!down);
}

/// Keys whose letters are words in neither layout, alone or together.
RC_GTEST_PROP(Program, LeavesWhatNeedsNoMendingAsASimpleModelHasIt, ()) {
  const std::vector<std::pair<std::uint16_t, std::string>> keys = {
      {12, "qQ"}, {13, "wW"}, {7, "xX"}, {4, "hH"}, {49, "  "}, {36, "\n\n"}, {51, ""}, {53, ""}};
  Run run(false);
  run.app.services.settings().autoFixDoubleCapitals.set(false);
  std::string model;
  for (const auto& [index, shift] : *rc::gen::container<std::vector<std::pair<int, bool>>>(
           rc::gen::pair(rc::gen::inRange(0, 8), rc::gen::arbitrary<bool>()))) {
    const auto& [code, characters] = keys[static_cast<std::size_t>(index)];
    run.perform({Step::Kind::key, code, shift ? event_flags::shift : 0});
    if (!characters.empty()) model += characters[shift ? 1 : 0];
    if (code == key_codes::deleteKey && !model.empty()) model.pop_back();
    RC_ASSERT(run.desktop.application.front().field.text() == model);
  }
}

RC_GTEST_PROP(Program, KeepsEveryCharacterOfATextWithoutADictionary, ()) {
  const auto pieces = *rc::gen::container<std::vector<std::string>>(
      rc::gen::element<std::string>("a", "Q", "1", " ", "\n", "\t", "~", "\"", "😀", "é", "—",
                                    "e\u0301", "\u0301", "漢", "\x01", "gh", "GH", "👍🏽"));
  std::string text;
  for (const auto& piece : pieces) text += piece;
  desk::Session session(nullptr, nullptr);
  session.desktop().spellChecker.setDictionary("ru", {}, {});
  session.desktop().spellChecker.setDictionary("en", {}, {});
  session.app().services.settings().autoFixDoubleCapitals.set(false);
  session.typist().type(text);
  RC_ASSERT(session.desktop().application.front().field.text() == text);
}

}  // namespace
}  // namespace kivra
