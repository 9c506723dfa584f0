// The cost of Kivra in the event path, from the tap's callback to its verdict: an ordinary key, the
// end of a word that needs nothing, and the end of one that is switched. Events are posted into
// nothing, so that only the decision counts.

#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <string>

#include "allocations.h"
#include "app/kivra_app.h"
#include "platform/embedded/embedded_desktop.h"
#include "platform/replaced_events.h"
#include "platform/spelling/hunspell_spell_checker.h"

namespace kivra {
namespace {

/// Keeps the tap's callback for the benchmark to call.
class BareTaps : public EventTaps {
 public:
  EventTapCallback callback;

  std::shared_ptr<EventTapPort> eventTapCreate(std::uint64_t /*mask*/,
                                               EventTapCallback tapCallback) override {
    callback = std::move(tapCallback);
    return std::make_shared<EventTapPort>();
  }
  std::shared_ptr<RunLoopSource> createRunLoopSource(EventTapPort& /*port*/) override {
    return std::make_shared<RunLoopSource>();
  }
  void runLoopAddSource(RunLoopSource& /*source*/) override {}
  void runLoopRemoveSource(RunLoopSource& /*source*/) override {}
  void eventTapEnable(EventTapPort& /*port*/, bool /*enable*/) override {}
};

class NoPosting : public EventPosting {
 public:
  std::unique_ptr<EventSource> eventSourceCreate(int /*stateId*/) override {
    return std::make_unique<EventSource>();
  }
  std::optional<KeyboardEvent> createKeyboardEvent(EventSource& /*source*/, std::uint16_t keyCode,
                                                   bool down) override {
    return KeyboardEvent{.keyCode = keyCode, .down = down, .unicodeString = {}};
  }
  void eventPost(const KeyboardEvent& /*event*/) override {}
};

SpellChecker* dictionaries() {
  static const auto checker = [] {
    auto loaded = std::make_unique<HunspellSpellChecker>();
    loaded->waitUntilLoaded();
    return loaded;
  }();
  return checker.get();
}

class Program {
 public:
  Program() { app_.delegate->applicationDidFinishLaunching(); }

  void press(std::uint16_t keyCode) {
    benchmark::DoNotOptimize(taps_.callback(EventType::keyDown, Event{.keyCode = keyCode}));
  }
  void type(const std::array<std::uint16_t, 6>& keys) {
    for (const auto key : keys) press(key);
  }
  void selectEnglish() { desktop_.inputSources.select("us"); }

 private:
  BareTaps taps_;
  NoPosting posting_;
  embedded::EmbeddedDesktop desktop_{nullptr, dictionaries};
  KivraApp app_{withEvents(desktop_.platform(), taps_, posting_)};
};

constexpr std::array<std::uint16_t, 6> privetKeys = {5, 4, 11, 2, 17, 45};  // "ghbdtn", "привет"
constexpr std::array<std::uint16_t, 6> letterKeys = {37, 14, 17, 17, 14, 15};  // "letter"

void anOrdinaryKey(benchmark::State& state) {
  Program program;
  for (int i = 0; i < 64; ++i) program.type(letterKeys);
  program.press(key_codes::escape);
  std::size_t key = 0;
  const auto before = allocationCount();
  for (auto _ : state) {
    program.press(letterKeys[key]);
    key = (key + 1) % letterKeys.size();
    if (key == 0) program.press(key_codes::escape);
  }
  state.counters["allocations"] = static_cast<double>(allocationCount() - before);
  state.SetLabel("bound: 1 us, no allocation");
}
BENCHMARK(anOrdinaryKey);

void aWordThatNeedsNothing(benchmark::State& state) {
  Program program;
  for (auto _ : state) {
    program.type(letterKeys);
    program.press(key_codes::space);
  }
  state.SetLabel("bound: 60 us (with its six keys)");
}
BENCHMARK(aWordThatNeedsNothing)->Unit(benchmark::kMicrosecond);

void aWordThatIsSwitched(benchmark::State& state) {
  Program program;
  for (auto _ : state) {
    program.selectEnglish();
    program.type(privetKeys);
    program.press(key_codes::space);
  }
  state.SetLabel("bound: 100 us (with its six keys)");
}
BENCHMARK(aWordThatIsSwitched)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace kivra

BENCHMARK_MAIN();
