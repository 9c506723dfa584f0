#include "platform/guard/guard_event_posting.h"

#include <string_view>

#include "platform/xkb/virtual_keys.h"

namespace kivra::guard {

namespace {

/// The next scalar of valid UTF-8; what is not valid gives U+FFFD a byte.
std::uint32_t takeScalar(std::string_view& text) {
  constexpr std::uint32_t replacement = 0xFFFD;
  const auto lead = static_cast<unsigned char>(text.front());
  text.remove_prefix(1);
  if (lead < 0x80) return lead;
  const auto more = lead >= 0xF0 ? 3U : lead >= 0xE0 ? 2U : 1U;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < more) return replacement;
  auto scalar = lead & (0x3FU >> more);
  for (std::size_t i = 0; i < more; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0) != 0x80) return replacement;
    scalar = scalar << 6 | (byte & 0x3F);
  }
  text.remove_prefix(more);
  return scalar;
}

}  // namespace

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
  for (std::string_view text = event.unicodeString; !text.empty();) {
    key.value = takeScalar(text);
    posted_.add(key);
  }
}

}  // namespace kivra::guard
