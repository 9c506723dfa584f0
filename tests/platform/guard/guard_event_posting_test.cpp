#include "platform/guard/guard_event_posting.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/guard/guard_link.h"

namespace kivra::guard {
namespace {

TEST(GuardLink, SaysWhenNoGuardCanBeStarted) {
  GuardLink link("/nowhere/guard");
  EXPECT_FALSE(link.start());
  link.send({.kind = OrderKind::enable});
  EXPECT_FALSE(link.receive());
}

TEST(GuardEventPosting, CharactersAreTypedWholeWhenTheirKeyGoesDown) {
  PostedKeys posted;
  GuardEventPosting posting(posted);
  const auto source = posting.eventSourceCreate(0);
  auto event = posting.createKeyboardEvent(*source, 0, true);
  ASSERT_TRUE(event);
  event->unicodeString = "aж\xFF€😀";
  posting.eventPost(*event);
  event->down = false;
  posting.eventPost(*event);
  std::u32string typed;
  for (const auto& key : posted.take()) typed += static_cast<char32_t>(key.value);
  EXPECT_EQ(typed, U"aж\uFFFD€😀");
  EXPECT_FALSE(posting.createKeyboardEvent(*source, 0x7FFF, true));
}

}  // namespace
}  // namespace kivra::guard
