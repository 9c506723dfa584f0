#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "app/services.h"
#include "platform/embedded/embedded_desktop.h"

namespace kivra {

/// The layout switcher on the embedded desktop, without a tap: keys go to it alone. Keys are named
/// by what they give in English, capitals with Shift. What it does is written down in short:
///   "<" Delete, "_" Space, "^" Return, "|" Tab, "[ru]" a source selected, "~" the pause after it,
///   "'x" text typed as such, any other character the key of that name.
class SwitcherFixture : public testing::Test {
 protected:
  SwitcherFixture() {
    desktop_.spellChecker.setDictionary("ru", {"привет", "мир", "про", "бок", "да"}, {});
    desktop_.spellChecker.setDictionary("en", {"hello", "ghj", "world"}, {});
    for (std::uint16_t code = 0; code <= key_codes::space; ++code) {
      for (const auto shift : {false, true}) {
        const auto character = services_.keycodeMap().english()->character(code, shift);
        if (character) keys_.emplace(*character, std::pair(code, shift));
      }
    }
  }

  LayoutSwitcher& switcher() { return services_.layoutSwitcher(); }

  void press(std::string_view names) { press(switcher(), names); }
  void press(LayoutSwitcher& switcher, std::string_view names) {
    for (const auto name : names) {
      const auto [code, shift] = keys_.at(std::string(1, name));
      switcher.keyTyped(code, shift ? event_flags::shift : 0);
    }
  }
  void eraseOne() { switcher().keyTyped(key_codes::deleteKey, 0); }

  /// Types the word and ends it; true when the trigger was consumed.
  bool word(std::string_view names, std::uint16_t trigger = key_codes::space) {
    press(names);
    return switcher().wordBoundary(trigger);
  }

  /// Types the word with Space and answers what came of it; "-" when nothing did.
  std::string mended(std::string_view names) {
    const auto consumed = word(names);
    EXPECT_EQ(consumed, !done_.empty()) << "typed without consuming the trigger, or the reverse";
    return consumed ? taken() : "-";
  }

  /// The same of one word after the other.
  std::string allMended(std::initializer_list<const char*> words) {
    std::string all;
    for (const auto* names : words) all += mended(names);
    return all;
  }

  /// Runs the undo of the last change.
  std::string undone() {
    services_.undoStack.last()->undo();
    return taken();
  }
  std::string token() { return services_.undoStack.last()->learnedToken.value_or("none"); }
  UndoStack::ActionKind kind() { return services_.undoStack.last()->kind; }
  bool hasUndo() { return services_.undoStack.last().has_value(); }

  void select(const std::string& source) { ASSERT_TRUE(desktop_.inputSources.select(source)); }
  void replaceWith(std::initializer_list<std::pair<const char*, const char*>> entries) {
    services_.replacements().setEntries({});
    for (const auto& [pattern, replacement] : entries) {
      services_.replacements().add(pattern, replacement);
    }
  }
  std::string taken() { return std::exchange(done_, {}); }

  std::string done_;
  embedded::EmbeddedDesktop desktop_{[this](const embedded::Json& effect) { note(effect); },
                                     nullptr};
  Services services_{desktop_.platform()};

 private:
  void note(const embedded::Json& effect) {
    if (effect.contains("selectSource")) {
      done_ += "[" + effect["selectSource"].get<std::string>() + "]";
    } else if (effect.contains("sleep")) {
      EXPECT_EQ(effect["sleep"], 5000);
      done_ += "~";
    } else if (effect["down"] == true) {
      lastDown_ = effect;
      EXPECT_EQ(effect["marker"], 19286);
      done_ += effect["post"] == "text" ? "'" + effect["text"].get<std::string>() : nameOf(effect);
    } else {
      lastDown_["down"] = false;
      EXPECT_EQ(effect, lastDown_) << "the key that went down goes up";
    }
  }

  std::string nameOf(const embedded::Json& effect) {
    static const std::map<int, std::string> named = {
        {key_codes::deleteKey, "<"},
        {key_codes::space, "_"},
        {key_codes::returnKey, "^"},
        {key_codes::tab, "|"},
    };
    const auto code = effect["code"].get<std::uint16_t>();
    const auto flags = effect["flags"].get<std::uint64_t>();
    EXPECT_TRUE(flags == 0 || flags == event_flags::shift) << flags;
    const auto found = named.find(code);
    if (found == named.end()) {
      return services_.keycodeMap().english()->character(code, flags != 0).value_or("?");
    }
    return flags == 0 ? found->second : "?";
  }

  std::map<std::string, std::pair<std::uint16_t, bool>> keys_;
  embedded::Json lastDown_;
};

}  // namespace kivra
