#include "platform/guard/guard_event_posting.h"

#include <unicode/unistr.h>

#include "platform/xkb/virtual_keys.h"

namespace kivra::guard {

std::unique_ptr<EventSource> GuardEventPosting::eventSourceCreate(int /*stateId*/) {
  return std::make_unique<EventSource>();
}

std::optional<KeyboardEvent> GuardEventPosting::createKeyboardEvent(EventSource& /*source*/,
                                                                    std::uint16_t keyCode,
                                                                    bool down) {
  if (!evdevCode(keyCode)) return std::nullopt;
  return KeyboardEvent{.keyCode = keyCode, .down = down, .unicodeString = {}};
}

void GuardEventPosting::eventPost(const KeyboardEvent& event) {
  PostedKey key{.down = event.down, .keyCode = event.keyCode, .flags = event.flags};
  if (event.unicodeString.empty()) {
    posted_.add(key);
    return;
  }
  // A character is typed whole when its key goes down.
  if (!event.down) return;
  key.kind = PostedKey::Kind::character;
  const auto text = icu::UnicodeString::fromUTF8(event.unicodeString);
  for (std::int32_t at = 0; at < text.length(); at = text.moveIndex32(at, 1)) {
    key.value = static_cast<std::uint32_t>(text.char32At(at));
    posted_.add(key);
  }
}

}  // namespace kivra::guard
