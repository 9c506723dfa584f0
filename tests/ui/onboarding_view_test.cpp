#include "ui/onboarding_view.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/embedded/embedded_desktop.h"

namespace kivra {
namespace {

/// A desktop that tells of itself when it is asked, and counts how often that is.
class TalkativeDesktop : public Privacy {
 public:
  bool isProcessTrusted() override { return false; }
  bool isProcessTrustedWithOptions(bool /*prompt*/) override { return false; }
  AccessType checkAccess() override { return AccessType::denied; }
  bool requestAccess() override { return false; }
  std::string privacyPaneAddress() override { return {}; }
  bool hasDiagnosis() override { return isTalkative; }
  std::vector<std::string> diagnosis() override {
    ++questions;
    return {"tray: missing"};
  }

  bool isTalkative = true;
  int questions = 0;
};

/// The node that says this, or null.
const View* find(const View& view, const std::string& text) {
  if (view.text == text) return &view;
  for (const auto& child : view.children) {
    if (const auto* found = find(child, text)) return found;
  }
  return nullptr;
}

class OnboardingViewTest : public ::testing::Test {
 protected:
  std::shared_ptr<OnboardingView> view() {
    const auto platform = desktop_.platform();
    return std::make_shared<OnboardingView>(
        std::make_shared<Permissions>(privacy_, platform.workspace, platform.runLoop),
        platform.terms);
  }

  embedded::EmbeddedDesktop desktop_{[](const embedded::Json&) {}, nullptr};
  TalkativeDesktop privacy_;
};

TEST_F(OnboardingViewTest, TellsOnRequestWhatTheDesktopHas) {
  const auto shown = view();
  const auto body = shown->body();
  EXPECT_EQ(find(body, "tray: missing"), nullptr);
  const auto* const button = find(body, "Подробнее…");
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(privacy_.questions, 0) << "nobody has wanted to know";
  button->action();
  EXPECT_NE(find(shown->body(), "tray: missing"), nullptr);
  button->action();
  EXPECT_EQ(privacy_.questions, 2) << "as it is by now";
}

TEST_F(OnboardingViewTest, HasNoButtonForADesktopThatTellsNothing) {
  privacy_.isTalkative = false;
  EXPECT_EQ(find(view()->body(), "Подробнее…"), nullptr);
}

}  // namespace
}  // namespace kivra
