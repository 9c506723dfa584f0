#include "platform/embedded/embedded_desktop.h"
#include "platform/input_sources_contract.h"

namespace kivra {
namespace {

class EmbeddedKeyboard {
 public:
  EventTaps& taps() { return desktop_.events; }
  EventPosting& posting() { return desktop_.events; }
  InputSources& sources() { return desktop_.inputSources; }

  void press(std::uint16_t keyCode) {
    if (keyCode == key_codes::leftShift) {
      changeFlags(event_flags::shift);
    } else {
      desktop_.events.send({.keyCode = keyCode, .flags = flags_});
    }
  }
  void release(std::uint16_t keyCode) {
    if (keyCode == key_codes::leftShift) changeFlags(0);
  }
  void click() { desktop_.events.send({.type = EventType::leftMouseDown}); }
  void pressUnanswered(std::uint16_t keyCode) {
    desktop_.events.disableTap(EventType::tapDisabledByTimeout);
    press(keyCode);
  }
  void choose(std::size_t index) {
    desktop_.inputSources.select(sources().createInputSourceList()->at(index)->id);
  }
  void settle() { desktop_.time.serve(); }
  std::string text() { return desktop_.application.front().field.text(); }

 private:
  void changeFlags(std::uint64_t flags) {
    flags_ = flags;
    desktop_.events.send(
        {.type = EventType::flagsChanged, .keyCode = key_codes::leftShift, .flags = flags});
  }

  embedded::EmbeddedDesktop desktop_{nullptr, nullptr};
  std::uint64_t flags_ = 0;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, EventTapsContract, EmbeddedKeyboard);
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, InputSourcesContract, EmbeddedKeyboard);

}  // namespace
}  // namespace kivra
