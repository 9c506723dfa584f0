#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "platform/pasteboard.h"

namespace kivra {

/// What every pasteboard does. `Backend` is default-constructible and has two functions:
/// `Pasteboard& pasteboard()`, which is empty at first, and `Pasteboard& elsewhere()`, the same one
/// as another program sees it.
template <class Backend>
class PasteboardContract : public ::testing::Test {
 protected:
  Pasteboard& pasteboard() { return backend_.pasteboard(); }
  Pasteboard& elsewhere() { return backend_.elsewhere(); }

  void write(const PasteboardItem& item) {
    pasteboard().clearContents();
    pasteboard().writeObjects({item});
  }

 private:
  Backend backend_;
};
TYPED_TEST_SUITE_P(PasteboardContract);

TYPED_TEST_P(PasteboardContract, IsEmptyAtFirstAndAfterClearing) {
  EXPECT_TRUE(this->pasteboard().pasteboardItems().empty());
  EXPECT_EQ(this->pasteboard().stringForType(pasteboardTypeString), std::nullopt);
  this->write({{pasteboardTypeString, "a"}});
  this->pasteboard().clearContents();
  EXPECT_TRUE(this->pasteboard().pasteboardItems().empty());
  EXPECT_EQ(this->pasteboard().stringForType(pasteboardTypeString), std::nullopt);
}

TYPED_TEST_P(PasteboardContract, CountsChangesAndNoReading) {
  auto last = this->pasteboard().changeCount();
  const auto changed = [&] { return std::exchange(last, this->pasteboard().changeCount()) < last; };
  this->write({{pasteboardTypeString, "a"}});
  EXPECT_TRUE(changed());
  this->write({{pasteboardTypeString, "a"}});
  EXPECT_TRUE(changed()) << "the same once more";
  this->pasteboard().pasteboardItems();
  this->pasteboard().stringForType(pasteboardTypeString);
  EXPECT_FALSE(changed());
  this->pasteboard().clearContents();
  EXPECT_TRUE(changed());
}

TYPED_TEST_P(PasteboardContract, HandsOverEveryTypeAsItWasWritten) {
  const PasteboardItem item = {{pasteboardTypeString, "Привет, 世界 😀"},
                               {"text/html", "<b>Привет</b>"},
                               {"image/png", std::string("\x89PNG\0\xFF\n", 7)},
                               {"application/x-empty", ""}};
  this->write(item);
  for (auto* reader : {&this->pasteboard(), &this->elsewhere()}) {
    const auto items = reader->pasteboardItems();
    ASSERT_EQ(items.size(), 1U);
    // A desktop may offer a text under further names.
    for (const auto& [type, data] : item) {
      ASSERT_TRUE(items[0].contains(type)) << type;
      EXPECT_EQ(items[0].at(type), data) << type;
    }
  }
}

TYPED_TEST_P(PasteboardContract, GivesTheTextOfTheTypeThatIsAskedFor) {
  this->write({{"text/html", "<b>a</b>"}});
  EXPECT_EQ(this->elsewhere().stringForType("text/html"), "<b>a</b>");
  EXPECT_EQ(this->elsewhere().stringForType(pasteboardTypeString), std::nullopt);
  this->pasteboard().clearContents();
  this->pasteboard().setString("ё", pasteboardTypeString);
  EXPECT_EQ(this->elsewhere().stringForType(pasteboardTypeString), "ё");
  EXPECT_EQ(this->elsewhere().stringForType("text/html"), std::nullopt) << "replaced";
}

REGISTER_TYPED_TEST_SUITE_P(PasteboardContract, IsEmptyAtFirstAndAfterClearing,
                            CountsChangesAndNoReading, HandsOverEveryTypeAsItWasWritten,
                            GivesTheTextOfTheTypeThatIsAskedFor);

}  // namespace kivra
