#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/status_bar.h"

namespace kivra {

/// What a status bar does. `Backend` is default-constructible and has `StatusBar& bar()`;
/// `std::vector<MenuItem> openMenu()`, what the user sees of the item's menu, without the actions,
/// nothing where there is no item; and `choose(title)` in the open menu.
template <class Backend>
class StatusBarContract : public ::testing::Test {
 protected:
  /// The menu in lines: "Title", "(Title)" for an item that cannot be chosen, "Title ⌘K".
  std::vector<std::string> menu() {
    std::vector<std::string> lines;
    for (const auto& item : backend_.openMenu()) {
      auto line = item.isSeparator ? "-" : item.isEnabled ? item.title : "(" + item.title + ")";
      if (!item.keyEquivalent.empty()) line += " ⌘" + item.keyEquivalent;
      lines.push_back(line);
    }
    return lines;
  }

  Backend backend_;
};
TYPED_TEST_SUITE_P(StatusBarContract);

TYPED_TEST_P(StatusBarContract, ShowsTheMenuAsItIsWhenItOpens) {
  auto item = this->backend_.bar().statusItem(squareLength);
  EXPECT_TRUE(this->menu().empty());
  std::vector<MenuItem> items;
  item->setMenu([&] { return items; });
  for (const auto* title : {"Off & on", "On"}) {
    items = {{.title = title, .action = [] {}},
             MenuItem::separator(),
             {.title = "Only said", .isEnabled = false},
             {.title = "Quit", .action = [] {}, .keyEquivalent = "q"}};
    EXPECT_EQ(this->menu(), (std::vector<std::string>{title, "-", "(Only said)", "Quit ⌘q"}));
  }
  item.reset();
  EXPECT_TRUE(this->menu().empty());
}

TYPED_TEST_P(StatusBarContract, DoesWhatTheUserChoosesOnce) {
  const auto item = this->backend_.bar().statusItem(squareLength);
  std::vector<std::string> done;
  item->setMenu([&] {
    return std::vector<MenuItem>{
        {.title = "One", .action = [&] { done.emplace_back("one"); }},
        {.title = "Two", .action = [&] { done.emplace_back("two"); }},
        {.title = "Three", .action = [&] { done.emplace_back("three"); }, .isEnabled = false}};
  });
  for (const auto* title : {"Two", "Three", "One", "Two"}) this->backend_.choose(title);
  EXPECT_EQ(done, (std::vector<std::string>{"two", "one", "two"}));
}

REGISTER_TYPED_TEST_SUITE_P(StatusBarContract, ShowsTheMenuAsItIsWhenItOpens,
                            DoesWhatTheUserChoosesOnce);

}  // namespace kivra
