#include "platform/session/linux_terms.h"

#include <gtest/gtest.h>

#include <set>

#include "platform/embedded/embedded_terms.h"
#include "platform/events.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra {
namespace {

TEST(LinuxTerms, NothingIsCalledByAWordOfAnotherPlatform) {
  const LinuxTerms terms;
  const embedded::EmbeddedTerms stated;
  constexpr auto last = static_cast<int>(Term::withoutLocalModel);
  for (int i = 0; i <= last; ++i) {
    const auto term = static_cast<Term>(i);
    EXPECT_FALSE(terms.term(term).empty()) << i;
    EXPECT_NE(terms.term(term), stated.term(term)) << i;
  }
}

// Letters, digits and signs are named by what they type, F1 and the like by the program.
TEST(LinuxTerms, KeysOfAKeyboardThatTypeNothingHaveNames) {
  const LinuxTerms terms;
  std::set<std::string> names;
  std::size_t count = 0;
  for (std::uint16_t evdev = 1; evdev < 128; ++evdev) {
    constexpr std::uint16_t lastOfFunctionBlock = 88;
    const auto key = virtualKey(evdev);
    const auto isBesideLetters = evdev > lastOfFunctionBlock && key && *key >= 64;
    const auto isArrowOrPause = key && (*key >= 123 || *key == key_codes::pause);
    if (!isBesideLetters || isArrowOrPause) continue;
    const auto name = terms.keyName(*key);
    ASSERT_TRUE(name.has_value()) << *key;
    names.insert(*name);
    ++count;
  }
  EXPECT_EQ(names.size(), count);
  for (const auto* name : {"Insert", "Delete", "Home", "End", "Page Up", "Page Down"}) {
    EXPECT_TRUE(names.contains(name)) << name;
  }
}

}  // namespace
}  // namespace kivra
