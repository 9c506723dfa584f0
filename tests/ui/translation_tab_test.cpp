#include "ui/translation_tab.h"

#include <gtest/gtest.h>

#include "app/services.h"
#include "platform/embedded/embedded_desktop.h"

namespace kivra {
namespace {

class TranslationTabTest : public testing::Test {
 protected:
  void edit(const std::string& key) {
    for (const auto& section : tab_->body().children) {
      for (const auto& control : section.children) {
        if (control.kind == ViewKind::secureField) control.assign(key);
      }
    }
  }
  std::string stored() { return services_.text.keychain().read(deepLKeyAccount).value_or(""); }

  embedded::EmbeddedDesktop desktop_{[](const embedded::Json&) {}, nullptr};
  Services services_{desktop_.platform()};
  std::shared_ptr<TranslationTab> tab_ =
      std::make_shared<TranslationTab>(services_.settings.pointer(), services_.text.keychain(),
                                       services_.text.engines(), desktop_.terms);
};

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
