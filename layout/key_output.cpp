#include "layout/key_output.h"

#include <chrono>
#include <string>

#include "support/text.h"

namespace kivra {

namespace {

constexpr int combinedSessionState = 0;
constexpr std::uint16_t textCarrierKey = 0;
constexpr auto pauseAfterSelecting = std::chrono::milliseconds(5);

}  // namespace

void KeyOutput::postKey(std::uint16_t keyCode, std::uint64_t flags) {
  postPair(keyCode, [flags](KeyboardEvent& event) { event.flags = flags; });
}

void KeyOutput::postDeletes(std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) postKey(key_codes::deleteKey, 0);
}

void KeyOutput::retype(const Word& word) {
  for (const auto& keystroke : word) {
    postKey(keystroke.keyCode, keystroke.shift ? event_flags::shift : 0);
  }
}

void KeyOutput::typeText(std::string_view text) {
  for (const auto& character : text::characters(text)) {
    postPair(textCarrierKey, [&](KeyboardEvent& event) { event.unicodeString = character; });
  }
}

void KeyOutput::selectLayout(const Layout& layout) {
  inputSources_.selectInputSource(layout.source());
  clock_.sleep(pauseAfterSelecting);
}

template <class Adjust>
void KeyOutput::postPair(std::uint16_t keyCode, Adjust adjust) {
  auto* const from = source();
  if (from == nullptr) return;
  auto down = posting_.createKeyboardEvent(*from, keyCode, true);
  auto up = posting_.createKeyboardEvent(*from, keyCode, false);
  if (!down || !up) return;
  for (auto* event : {&*down, &*up}) {
    adjust(*event);
    event->userData = syntheticEventMarker;
    posting_.eventPost(*event);
  }
}

EventSource* KeyOutput::source() {
  if (!source_) source_ = posting_.eventSourceCreate(combinedSessionState);
  return source_.get();
}

}  // namespace kivra
