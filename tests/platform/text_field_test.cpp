#include "platform/embedded/text_field.h"

#include <gtest/gtest.h>

namespace kivra::embedded {
namespace {

using Selection = std::pair<std::size_t, std::size_t>;

TEST(TextField, ErasesUserPerceivedCharacters) {
  TextField field("aи\u0306👍🏽");
  EXPECT_EQ(field.length(), 3U);
  field.deleteBackward();
  EXPECT_EQ(field.text(), "aи\u0306");
  field.deleteBackward();
  field.deleteBackward();
  field.deleteBackward();
  EXPECT_EQ(field.text(), "");
}

TEST(TextField, ReplacesItsSelection) {
  TextField field("привет мир");
  ASSERT_TRUE(field.select(7, 10));
  EXPECT_EQ(field.selectedText(), "мир");
  field.insert("дом");
  EXPECT_EQ(field.text(), "привет дом");
  ASSERT_TRUE(field.select(0, 7));
  field.deleteForward();
  EXPECT_EQ(field.text(), "дом");
  EXPECT_FALSE(field.select(0, 4));
  EXPECT_FALSE(field.select(2, 1));
}

TEST(TextField, MovesAndExtends) {
  TextField field("abc");
  field.move(TextField::Target::left, false);
  EXPECT_EQ(field.selection(), (Selection{2, 2}));
  field.move(TextField::Target::beginning, true);
  EXPECT_EQ(field.selection(), (Selection{0, 2}));
  field.move(TextField::Target::right, true);
  EXPECT_EQ(field.selection(), (Selection{1, 2})) << "the moving end moves";
  field.move(TextField::Target::left, false);
  EXPECT_EQ(field.selection(), (Selection{1, 1})) << "a selection collapses to its side";
  field.move(TextField::Target::end, false);
  field.move(TextField::Target::right, false);
  EXPECT_EQ(field.selection(), (Selection{3, 3}));
}

TEST(TextField, TakesBackTheLastPasteOnly) {
  TextField field("old text");
  field.selectAll();
  field.paste("new");
  field.insert("!");
  field.undoPaste();
  EXPECT_EQ(field.text(), "old text!");
  field.undoPaste();
  EXPECT_EQ(field.text(), "old text!");
}

}  // namespace
}  // namespace kivra::embedded
