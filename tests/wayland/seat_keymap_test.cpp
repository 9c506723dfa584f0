#include "platform/wayland/seat_keymap.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "guarded_session.h"
#include "platform/xkb/session_layouts.h"

namespace kivra::wayland {
namespace {

class SeatKeymapTest : public ::testing::Test {
 protected:
  /// The layouts that the map has, once the compositor has told everything.
  std::vector<std::string> layouts() {
    compositor_.roundtrip();
    compositor_.roundtrip();
    std::vector<std::string> ids;
    if (!keymap_.isConnected()) return ids;
    const CompiledMap map(keymap_.newKeymap(), xkb_keymap_unref);
    for (const auto& layout : sessionLayouts(map.get(), keymap_.rulesNames())) {
      ids.push_back(layout.id);
    }
    return ids;
  }

  using Ids = std::vector<std::string>;

  e2e::EnteredSway sway_{{}};
  Connection compositor_;
  int changes_ = 0;
  SeatKeymap keymap_{compositor_, [this] { ++changes_; }};
};

TEST_F(SeatKeymapTest, KnowsTheMapOfTheKeyboardThatIsTypedOn) {
  EXPECT_EQ(layouts(), Ids{}) << "no keyboard yet";
  std::optional<e2e::Hand> hand(std::in_place, e2e::mapOf("us,ru"));
  hand->type("a");
  EXPECT_EQ(layouts(), (Ids{"us", "ru"}));
  EXPECT_EQ(changes_, 1);
  e2e::Hand german(e2e::mapOf("de,ru(phonetic)"));
  german.type("a");
  EXPECT_EQ(layouts(), (Ids{"de", "ru(phonetic)"}));
  EXPECT_EQ(changes_, 2);
}

TEST_F(SeatKeymapTest, TellsOfNoChangeWhereAnotherKeyboardHasTheSameMap) {
  e2e::Hand one(e2e::mapOf("us,ru"));
  e2e::Hand two(e2e::mapOf("us,ru"));
  for (int i = 0; i < 3; ++i) {
    one.type("a");
    two.type("a");
    layouts();
  }
  EXPECT_EQ(changes_, 1);
}

TEST_F(SeatKeymapTest, KeepsTheMapWhenTheLastKeyboardGoes) {
  std::optional<e2e::Hand> hand(std::in_place, e2e::mapOf("us,ru"));
  hand->type("a");
  layouts();
  hand.reset();
  EXPECT_EQ(layouts(), (Ids{"us", "ru"}));
  const e2e::Hand next(e2e::mapOf("us,ru"));
  EXPECT_EQ(layouts(), (Ids{"us", "ru"}));
  EXPECT_EQ(changes_, 1);
}

}  // namespace
}  // namespace kivra::wayland
