#include "ui/translation_tab.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "app/services.h"
#include "platform/embedded/embedded_desktop.h"

namespace kivra {
namespace {

/// A keychain that the user has to unlock; what is asked of it waits until then.
class LockedKeychain : public embedded::EmbeddedKeychain {
 public:
  bool mayAskUser() override { return true; }
  void itemCopyMatchingLater(const KeychainItem& item,
                             const KeychainCompletion& completion) override {
    waiting_.push_back([this, item, completion] { completion(itemCopyMatching(item)); });
  }

  std::size_t waiting() const { return waiting_.size(); }
  void unlock() {
    for (const auto& answer : std::exchange(waiting_, {})) answer();
  }

 private:
  std::vector<std::function<void()>> waiting_;
};

class TranslationTabTest : public testing::Test {
 protected:
  void edit(const std::string& key) {
    for (const auto& section : tab_->body().children) {
      for (const auto& control : section.children) {
        if (control.kind == ViewKind::secureField) control.assign(key);
      }
    }
  }
  /// What stands in the key field.
  std::string shown() {
    for (const auto& section : tab_->body().children) {
      for (const auto& control : section.children) {
        if (control.kind == ViewKind::secureField) return std::get<std::string>(control.value);
      }
    }
    return "no field";
  }
  std::string stored() { return services_.text.keychain().read(deepLKeyAccount).value_or(""); }

  embedded::EmbeddedDesktop desktop_{[](const embedded::Json&) {}, nullptr};
  Services services_{desktop_.platform()};
  std::shared_ptr<TranslationTab> tab_ =
      std::make_shared<TranslationTab>(services_.settings.pointer(), services_.text.keychain(),
                                       services_.text.engines(), desktop_.terms);
};

TEST_F(TranslationTabTest, AKeychainThatAsksTheUserIsReadWhenTheTabIsShown) {
  LockedKeychain keychain;
  KeychainStore store(keychain, "test");
  tab_ = std::make_shared<TranslationTab>(services_.settings.pointer(), store,
                                          services_.text.engines(), desktop_.terms);
  EXPECT_EQ(keychain.waiting(), 0U);
  tab_->onAppear();
  tab_->onAppear();
  EXPECT_EQ(keychain.waiting(), 1U) << "the user is asked once";
  EXPECT_EQ(shown(), "");
  keychain.unlock();  // there is no key yet, or the user refused
  store.write("key:fx", deepLKeyAccount);
  EXPECT_EQ(shown(), "");
  auto changes = 0;
  const auto subscription = tab_->observe([&] { ++changes; });
  tab_->onAppear();
  keychain.unlock();
  EXPECT_EQ(shown(), "key:fx");
  EXPECT_EQ(changes, 1);
  tab_->onAppear();
  EXPECT_EQ(keychain.waiting(), 0U) << "the field is the source now";
}

TEST_F(TranslationTabTest, WhatIsTypedBeforeTheKeychainIsUnlockedStays) {
  LockedKeychain keychain;
  KeychainStore store(keychain, "test");
  store.write("old", deepLKeyAccount);
  tab_ = std::make_shared<TranslationTab>(services_.settings.pointer(), store,
                                          services_.text.engines(), desktop_.terms);
  tab_->onAppear();
  edit("");
  keychain.unlock();
  EXPECT_EQ(shown(), "");
}

TEST_F(TranslationTabTest, KeychainFollowsTheFieldWhileItIsWaitedFor) {
  edit("ka");
  EXPECT_EQ(stored(), "ka");
  for (const std::string newest : {"kab", ""}) {
    desktop_.keychain.setMeanwhile([&] { edit(newest); });
    edit("k");
    EXPECT_EQ(stored(), newest);
  }
}

}  // namespace
}  // namespace kivra
