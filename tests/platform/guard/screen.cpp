#include "platform/guard/screen.h"

#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon.h>

#include <array>
#include <memory>

#include "platform/events.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::guard {

xkb_keymap* Layouts::newKeymap(const std::string& options) {
  const std::unique_ptr<xkb_context, void (*)(xkb_context*)> context(
      xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref);
  const xkb_rule_names names{.rules = "evdev",
                             .model = "pc105",
                             .layout = "us,ru",
                             .variant = "",
                             .options = options.c_str()};
  return xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
}

Layouts::Layouts(const std::string& options) {
  const std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)> map(newKeymap(options),
                                                               xkb_keymap_unref);
  keyMap_ = KeyMap(map.get());
  for (std::uint16_t key = 0; key < KeyMap::keyLimit; ++key) {
    for (std::uint32_t group = 0; group < 2; ++group) {
      for (std::uint32_t level = 0; level < 2; ++level) {
        const xkb_keysym_t* symbols = nullptr;
        const auto count = xkb_keymap_key_get_syms_by_level(
            map.get(), key + std::uint32_t{xkbOffset}, group, level, &symbols);
        if (count == 1) characters_[key][group][level] = xkb_keysym_to_utf32(symbols[0]);
      }
    }
    // Space is the same in every group.
    if (characters_.contains(key) && characters_[key][1][0] == 0) {
      characters_[key][1] = characters_[key][0];
    }
  }
}

char32_t Layouts::character(std::uint16_t key, std::uint32_t group, bool shift) const {
  const auto found = characters_.find(key);
  if (found == characters_.end() || group > 1) return 0;
  const auto& levels = found->second[group];
  return shift && levels[1] != 0 ? levels[1] : levels[0];
}

const Layouts& Layouts::plain() {
  static const Layouts layouts;
  return layouts;
}

void Screen::press(std::uint16_t key) {
  if (down_.test(key)) ++faults_;
  down_.set(key);
  const auto flag = layouts_->keyMap().flag(key);
  lone_ = (flag & tappedAlone) != 0 ? key : std::uint16_t{0};
  if (key == KEY_CAPSLOCK && layouts_->keyMap().isLock(key)) {
    capsEnds_ = isCapsOn_;
    isCapsOn_ = true;
  } else if (flag == 0) {
    act(key);
  }
}

void Screen::repeat(std::uint16_t key) {
  if (!down_.test(key)) ++faults_;
  if (layouts_->keyMap().flag(key) == 0) act(key);
}

void Screen::release(std::uint16_t key) {
  if (!down_.test(key)) ++faults_;
  down_.reset(key);
  if (lone_ == key && key != 0) ++menus_;
  lone_ = 0;
  if (key == KEY_CAPSLOCK && capsEnds_) isCapsOn_ = capsEnds_ = false;
}

void Screen::act(std::uint16_t key) {
  constexpr auto chord = event_flags::control | event_flags::option | event_flags::command;
  const auto flags = this->flags();
  if ((flags & chord) != 0) {
    if (layouts_->character(key, 0, false) == 0 && key != KEY_INSERT) return;
    if ((flags & event_flags::control) != 0) chords_ += "C-";
    if ((flags & event_flags::option) != 0) chords_ += "A-";
    if ((flags & event_flags::command) != 0) chords_ += "S-";
    chords_ += std::to_string(key) + " ";
  } else if (key == KEY_BACKSPACE) {
    if (text_.size() > windowStart_) {
      text_.pop_back();
    } else {
      ++faults_;
    }
  } else if (const auto plain = layouts_->character(key, group_, false); plain > U' ') {
    const auto typing = layouts_->keyMap().keyFor(plain, group_);
    const auto isTurned = isCapsOn_ && typing && typing->isCased;
    const auto shift = ((flags & event_flags::shift) != 0) != isTurned;
    text_ += layouts_->character(key, group_, shift);
  } else if (plain == U' ') {
    text_ += plain;
  }
}

std::uint64_t Screen::flags() const {
  std::uint64_t flags = 0;
  for (std::uint16_t key = 0; key < KeyMap::keyLimit; ++key) {
    if (down_.test(key)) flags |= layouts_->keyMap().flag(key);
  }
  return flags;
}

void Screen::moveFocus() { windowStart_ = text_.size(); }

std::string Screen::text() const {
  std::string utf8;
  for (const auto character : text_) {
    if (character < 0x80) {
      utf8 += static_cast<char>(character);
    } else {
      // The Cyrillic letters take two bytes.
      utf8 += static_cast<char>(0xC0 | character >> 6);
      utf8 += static_cast<char>(0x80 | (character & 0x3F));
    }
  }
  return utf8;
}

}  // namespace kivra::guard
