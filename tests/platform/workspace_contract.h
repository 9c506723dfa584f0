#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/workspace.h"

namespace kivra {

/// What every workspace does. `Backend` is default-constructible and has `Workspace& workspace()`
/// and what other programs do on its desktop, finished when the call returns:
/// - `bringToFront(identifier)`: of nothing, an application that has none; `leave()`: nobody is in
///   front any more;
/// - `readPassword(bool)`: the application in front begins to, or ends;
/// - `std::vector<std::string> opened()`: the addresses handed to the user's programs.
template <class Backend>
class WorkspaceContract : public ::testing::Test {
 protected:
  Workspace& workspace() { return backend_.workspace(); }

  Backend backend_;
};
TYPED_TEST_SUITE_P(WorkspaceContract);

TYPED_TEST_P(WorkspaceContract, KnowsTheApplicationInFront) {
  for (const std::optional<std::string>& identifier :
       {std::optional<std::string>("org.example.Editor"),
        std::optional<std::string>("org.example.Mail"), std::optional<std::string>(),
        std::optional<std::string>("org.example.Editor")}) {
    this->backend_.bringToFront(identifier);
    EXPECT_EQ(this->workspace().frontmostBundleIdentifier(), identifier);
    EXPECT_EQ(this->workspace().frontmostBundleIdentifier(), identifier) << "asked once more";
  }
  this->backend_.leave();
  EXPECT_EQ(this->workspace().frontmostBundleIdentifier(), std::nullopt);
}

TYPED_TEST_P(WorkspaceContract, KnowsWhenAPasswordIsRead) {
  this->backend_.bringToFront("org.example.Editor");
  for (const auto isRead : {false, true, false}) {
    this->backend_.readPassword(isRead);
    EXPECT_EQ(this->workspace().isSecureEventInputEnabled(), isRead);
  }
}

TYPED_TEST_P(WorkspaceContract, NamesNobodyForACombinationThatNobodyWaitsFor) {
  EXPECT_EQ(this->workspace().shortcutOwner(
                {.keyCode = key_codes::z, .flags = event_flags::control | event_flags::option}),
            "");
}

TYPED_TEST_P(WorkspaceContract, HandsAnAddressOnAsItIs) {
  this->workspace().open("https://example.org/?q=привет&x=1#y");
  EXPECT_EQ(this->backend_.opened(),
            std::vector<std::string>{"https://example.org/?q=привет&x=1#y"});
}

REGISTER_TYPED_TEST_SUITE_P(WorkspaceContract, KnowsTheApplicationInFront, KnowsWhenAPasswordIsRead,
                            NamesNobodyForACombinationThatNobodyWaitsFor, HandsAnAddressOnAsItIs);

}  // namespace kivra
