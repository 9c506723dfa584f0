#include "script_player.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <utility>

#include "configure_service.h"
#include "report.h"
#include "set_property.h"
#include "support/text.h"

namespace kivra::desk {

namespace {

using embedded::EmbeddedInputSources;
using embedded::Json;

constexpr std::uint64_t mostCode = std::numeric_limits<std::uint16_t>::max();
constexpr std::uint64_t mostFlags = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t mostRepeats = 1'000'000;

std::uint16_t keyCode(const Operation& operation) {
  return static_cast<std::uint16_t>(operation.integer("code", mostCode));
}

std::int64_t marker(const Operation& operation) {
  return operation.has("marker") ? operation.signedInteger("marker") : 0;
}

EmbeddedInputSources::Source inputSource(const Operation& element) {
  InputSource source{.id = element.string("id"),
                     .category = element.string("category", keyboardInputSourceCategory),
                     .isSelectCapable = element.boolean("selectCapable", true),
                     .languages = element.strings("languages"),
                     .unicodeKeyLayoutData = nullptr};
  if (const auto layout = element.nullableString("layout")) {
    const auto read = EmbeddedInputSources::keyboardSource("", {}, *layout);
    if (!read) throw ScriptError("unknown layout: " + *layout);
    source.unicodeKeyLayoutData = read->unicodeKeyLayoutData;
  }
  return std::make_shared<const InputSource>(std::move(source));
}

std::string onlyOf(std::string value, std::initializer_list<const char*> allowed) {
  if (std::ranges::find(allowed, value) == allowed.end()) {
    throw ScriptError("unknown name: " + value);
  }
  return value;
}

}  // namespace

struct ScriptPlayer::Entry {
  const char* name;
  void (ScriptPlayer::*play)(const Operation&);
  bool startsProgram = true;
};

const ScriptPlayer::Entry& ScriptPlayer::entryFor(const std::string& name) {
  static constexpr Entry entries[] = {
      {"type", &ScriptPlayer::type},
      {"key", &ScriptPlayer::key},
      {"modifiers", &ScriptPlayer::modifiers},
      {"mouse", &ScriptPlayer::mouse},
      {"wait", &ScriptPlayer::wait},
      {"source", &ScriptPlayer::source},
      {"sources", &ScriptPlayer::sources, false},
      {"focus", &ScriptPlayer::focus},
      {"select", &ScriptPlayer::select},
      {"default", &ScriptPlayer::putDefault, false},
      {"set", &ScriptPlayer::set},
      {"add", &ScriptPlayer::add},
      {"remove", &ScriptPlayer::remove},
      {"dictionary", &ScriptPlayer::dictionary, false},
      {"permission", &ScriptPlayer::permission, false},
      {"pasteboard", &ScriptPlayer::pasteboard},
      {"instance", &ScriptPlayer::instance, false},
      {"tap", &ScriptPlayer::tap, false},
      {"restart", &ScriptPlayer::restart},
      {"report", &ScriptPlayer::printReport},
      {"keychain", &ScriptPlayer::configure, false},
      {"http", &ScriptPlayer::configure},
      {"model", &ScriptPlayer::configure, false},
      {"translator", &ScriptPlayer::configure, false},
      {"languages", &ScriptPlayer::configure, false},
      {"menu", &ScriptPlayer::menu},
      {"choose", &ScriptPlayer::choose},
      {"button", &ScriptPlayer::configure},
      {"window", &ScriptPlayer::window},
      {"press", &ScriptPlayer::press},
      {"edit", &ScriptPlayer::edit},
      {"pick", &ScriptPlayer::pick},
      {"close", &ScriptPlayer::close},
  };
  const auto* found = std::ranges::find(entries, name, &Entry::name);
  if (found == std::end(entries)) throw ScriptError("unknown operation: " + name);
  return *found;
}

ScriptPlayer::ScriptPlayer(embedded::Effects::Sink output)
    : output_(std::move(output)), session_(output_, [this](std::uint16_t code, bool passed) {
        output_(Json{{passed ? "passed" : "consumed", code}});
      }) {}

void ScriptPlayer::play(const Operation& operation) {
  const auto& entry = entryFor(operation.name());
  if (entry.startsProgram) session_.app();
  // What a running program can still do without the clock moving comes before the operation.
  if (session_.isLaunched()) session_.desktop().time.serve();
  if (isOver()) return;
  (this->*entry.play)(operation);
}

void ScriptPlayer::configure(const Operation& operation) {
  configureService(session_.desktop(), operation);
}

void ScriptPlayer::type(const Operation& operation) {
  session_.typist().type(operation.string("text"));
}

void ScriptPlayer::key(const Operation& operation) {
  const Event event{.type = EventType::keyDown,
                    .keyCode = keyCode(operation),
                    .flags = operation.integer("flags", mostFlags, 0),
                    .userData = marker(operation)};
  const auto times = operation.integer("times", mostRepeats, 1);
  for (std::uint64_t i = 0; i < times; ++i) {
    const auto passed = session_.desktop().events.send(event);
    output_(Json{{passed ? "passed" : "consumed", event.keyCode}});
  }
}

void ScriptPlayer::modifiers(const Operation& operation) {
  session_.desktop().events.send({.type = EventType::flagsChanged,
                                  .keyCode = keyCode(operation),
                                  .flags = operation.integer("flags", mostFlags),
                                  .userData = marker(operation)});
}

void ScriptPlayer::mouse(const Operation& operation) {
  const auto isLeft = onlyOf(operation.string("button"), {"left", "right"}) == "left";
  session_.desktop().events.send(
      {.type = isLeft ? EventType::leftMouseDown : EventType::rightMouseDown});
}

void ScriptPlayer::wait(const Operation& operation) {
  const std::chrono::microseconds duration(
      std::llround(operation.nonNegative("seconds") * 1'000'000));
  session_.desktop().time.runFor(duration);
}

void ScriptPlayer::source(const Operation& operation) {
  const auto id = operation.string("id");
  if (!session_.desktop().inputSources.select(id)) throw ScriptError("unknown source: " + id);
}

void ScriptPlayer::sources(const Operation& operation) {
  std::vector<EmbeddedInputSources::Source> sources;
  for (const auto& value : operation.array("list")) {
    sources.push_back(inputSource(operation.element(value)));
  }
  session_.desktop().inputSources.setSources(std::move(sources));
  session_.typist().learnKeys();
}

void ScriptPlayer::focus(const Operation& operation) {
  embedded::FrontApplication front;
  if (operation.has("application")) front.identifier = operation.nullableString("application");
  front.accessible = operation.boolean("accessible", true);
  front.secure = operation.boolean("secure", false);
  front.copies = operation.boolean("copies", true);
  front.field = embedded::TextField(operation.string("text", ""));
  if (operation.has("selection")) {
    const auto [begin, end] = operation.range("selection");
    if (!front.field.select(begin, end)) throw ScriptError("the selection is outside the text");
  }
  session_.desktop().application.focus(std::move(front));
}

void ScriptPlayer::select(const Operation& operation) {
  const auto [begin, end] = operation.range("range");
  if (!session_.desktop().application.front().field.select(begin, end)) {
    throw ScriptError("the range is outside the text");
  }
  session_.desktop().application.cursorMoved();
}

void ScriptPlayer::putDefault(const Operation& operation) {
  const auto key = operation.string("key");
  auto& defaults = session_.desktop().defaults;
  if (operation.has("data")) {
    defaults.setObject(Data{operation.string("data")}, key);
    return;
  }
  const auto& value = operation.any("value");
  if (value.is_boolean()) {
    defaults.setObject(value.get<bool>(), key);
  } else if (value.is_string()) {
    defaults.setObject(value.get<std::string>(), key);
  } else {
    defaults.setObject(operation.strings("value"), key);
  }
}

void ScriptPlayer::set(const Operation& operation) {
  setProperty(session_.app().services.settings(), operation);
}

void ScriptPlayer::add(const Operation& operation) {
  const auto pattern = operation.string("pattern");
  session_.app().services.replacements().add(pattern, operation.string("replacement"));
}

void ScriptPlayer::remove(const Operation& operation) {
  auto& store = session_.app().services.replacements();
  const auto pattern = ReplacementStore::normalize(text::trimmed(operation.string("pattern")));
  const auto entries = store.entries();
  const auto found = std::ranges::find_if(entries, [&](const ReplacementStore::Entry& entry) {
    return ReplacementStore::normalize(entry.pattern) == pattern;
  });
  if (found != entries.end()) store.remove(found->id);
}

void ScriptPlayer::dictionary(const Operation& operation) {
  embedded::EmbeddedSpellChecker::Corrections corrections;
  if (operation.has("corrections")) {
    for (const auto& [word, correction] : operation.object("corrections").items()) {
      if (!correction.is_string()) throw ScriptError("\"corrections\" must hold strings");
      corrections.emplace(word, correction.get<std::string>());
    }
  }
  session_.desktop().spellChecker.setDictionary(onlyOf(operation.string("language"), {"ru", "en"}),
                                                operation.strings("words"), corrections);
}

void ScriptPlayer::permission(const Operation& operation) {
  const auto name = onlyOf(operation.string("name"), {"accessibility", "inputMonitoring"});
  const auto granted = operation.boolean("granted");
  auto& session = session_.desktop().session;
  if (name == "accessibility") {
    session.setAccessibilityGranted(granted);
  } else {
    session.setInputMonitoringGranted(granted);
  }
}

void ScriptPlayer::pasteboard(const Operation& operation) {
  std::vector<PasteboardItem> items;
  for (const auto& value : operation.array("items")) {
    auto& item = items.emplace_back();
    if (!value.is_object()) throw ScriptError("\"items\" must hold objects");
    for (const auto& [type, data] : value.items()) {
      if (!data.is_string()) throw ScriptError("pasteboard data must be strings");
      item.emplace(type, data.get<std::string>());
    }
  }
  session_.desktop().pasteboard.setItems(std::move(items));
}

void ScriptPlayer::instance(const Operation& operation) {
  constexpr std::uint64_t mostPid = std::numeric_limits<std::int32_t>::max();
  session_.desktop().session.addInstance(
      static_cast<std::int32_t>(operation.integer("pid", mostPid)));
}

void ScriptPlayer::tap(const Operation& operation) {
  auto& events = session_.desktop().events;
  if (operation.has("refuse")) {
    events.setRefusesTaps(operation.boolean("refuse"));
    return;
  }
  const auto reason = onlyOf(operation.string("disabled"), {"timeout", "userInput"});
  events.disableTap(reason == "timeout" ? EventType::tapDisabledByTimeout
                                        : EventType::tapDisabledByUserInput);
}

void ScriptPlayer::menu(const Operation& /*operation*/) {
  output_(Json{{"menu", embedded::menuJson(session_.desktop().statusBar.openMenu())}});
}

void ScriptPlayer::choose(const Operation& operation) { user().choose(operation.string("item")); }

void ScriptPlayer::window(const Operation& operation) {
  output_(user().look(operation.string("name")));
}

void ScriptPlayer::press(const Operation& operation) {
  const auto window = operation.string("window");
  user().press(window, operation.string("text"));
}

void ScriptPlayer::edit(const Operation& operation) {
  const auto window = operation.string("window");
  const auto field = operation.string("field");
  user().edit(window, field, operation.string("text"));
}

void ScriptPlayer::pick(const Operation& operation) {
  const auto window = operation.string("window");
  const auto picker = operation.string("picker");
  user().pick(window, picker, operation.string("option"));
}

void ScriptPlayer::close(const Operation& operation) { user().close(operation.string("window")); }

void ScriptPlayer::restart(const Operation& /*operation*/) { session_.restart(); }

void ScriptPlayer::printReport(const Operation& /*operation*/) { output_(report(session_)); }

}  // namespace kivra::desk
