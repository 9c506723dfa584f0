#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

#include "platform/keychain.h"

namespace kivra {

/// What every keychain does. `Backend` is default-constructible and has `Keychain& keychain()`,
/// which need not be empty, and `turnUntil(condition)`, which turns the run loop.
template <class Backend>
class KeychainContract : public ::testing::Test {
 protected:
  Keychain& keychain() { return backend_.keychain(); }

  Backend backend_;
  /// No other test has it.
  const KeychainItem item_{::testing::UnitTest::GetInstance()->current_test_info()->name(),
                           "account"};
};
TYPED_TEST_SUITE_P(KeychainContract);

TYPED_TEST_P(KeychainContract, KeepsReplacesAndDeletes) {
  auto& keychain = this->keychain();
  const auto& item = this->item_;
  EXPECT_EQ(keychain.itemCopyMatching(item), std::nullopt);
  EXPECT_EQ(keychain.itemUpdate(item, "first"), KeychainStatus::itemNotFound);
  EXPECT_NE(keychain.itemDelete(item), KeychainStatus::notAvailable);
  EXPECT_EQ(keychain.itemCopyMatching(item), std::nullopt) << "an update adds nothing";
  EXPECT_EQ(keychain.itemAdd(item, "first"), KeychainStatus::success);
  EXPECT_EQ(keychain.itemCopyMatching(item), "first");
  EXPECT_EQ(keychain.itemUpdate(item, "second"), KeychainStatus::success);
  EXPECT_EQ(keychain.itemCopyMatching(item), "second");
  EXPECT_EQ(keychain.itemAdd(item, "third"), KeychainStatus::success);
  EXPECT_EQ(keychain.itemCopyMatching(item), "third");
  EXPECT_EQ(keychain.itemCopyMatching({item.service, "another account"}), std::nullopt);
  EXPECT_EQ(keychain.itemCopyMatching({"another service", item.account}), std::nullopt);
  EXPECT_EQ(keychain.itemDelete(item), KeychainStatus::success);
  EXPECT_EQ(keychain.itemCopyMatching(item), std::nullopt);
}

TYPED_TEST_P(KeychainContract, KeepsBytesAsTheyAre) {
  const std::string bytes("  \xff\0 ключ\n", 14);
  ASSERT_EQ(this->keychain().itemAdd(this->item_, bytes), KeychainStatus::success);
  EXPECT_EQ(this->keychain().itemCopyMatching(this->item_), bytes);
}

TYPED_TEST_P(KeychainContract, AnswersLaterWhatItAnswersAtOnce) {
  for (const auto& expected : {std::optional<std::string>(), std::optional<std::string>("ключ")}) {
    if (expected) this->keychain().itemAdd(this->item_, *expected);
    std::optional<std::optional<std::string>> answer;
    this->keychain().itemCopyMatchingLater(this->item_,
                                           [&](auto given) { answer = std::move(given); });
    this->backend_.turnUntil([&] { return answer.has_value(); });
    ASSERT_TRUE(answer);
    EXPECT_EQ(*answer, expected);
  }
}

REGISTER_TYPED_TEST_SUITE_P(KeychainContract, KeepsReplacesAndDeletes, KeepsBytesAsTheyAre,
                            AnswersLaterWhatItAnswersAtOnce);

}  // namespace kivra
