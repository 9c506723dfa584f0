#include "guarded_session.h"

#include <array>
#include <random>

#include "platform/xkb/virtual_keys.h"
#include "platform/xkb/xkb_layout.h"

namespace kivra::e2e {

std::string typedIn(std::uint32_t group, std::string_view characters) {
  static const std::array layouts = {XkbLayout::named("us"), XkbLayout::named("ru")};
  std::string text;
  for (const auto character : characters) {
    const auto key = virtualKey(keyOfCharacter(character)).value();
    text += layouts.at(group)->character(key, false).value();
  }
  return text;
}

std::string misplacedWords(int count) {
  std::minstd_rand random(1);
  constexpr std::string_view letters = "qwertyuiopasdfghjklzxcvbnm";
  std::string words;
  for (int i = 0; i < count; ++i) {
    for (auto length = 2 + random() % 8; length > 0; --length) {
      words += letters[random() % letters.size()];
    }
    words += ' ';
  }
  return words;
}

}  // namespace kivra::e2e
