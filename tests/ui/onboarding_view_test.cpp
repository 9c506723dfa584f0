#include "ui/onboarding_view.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/embedded/embedded_desktop.h"

namespace kivra {
namespace {

/// A desktop that has something to tell of itself, or nothing.
class TalkativeDesktop : public Privacy {
 public:
  bool isProcessTrusted() override { return false; }
  bool isProcessTrustedWithOptions(bool /*prompt*/) override { return false; }
  AccessType checkAccess() override { return AccessType::denied; }
  bool requestAccess() override { return false; }
  std::string privacyPaneAddress() override { return {}; }
  std::vector<std::string> diagnosis() override { return lines; }

  std::vector<std::string> lines;
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
  privacy_.lines = {"tray: missing"};
  const auto shown = view();
  EXPECT_EQ(find(shown->body(), "tray: missing"), nullptr);
  privacy_.lines = {"tray: there"};
  const auto body = shown->body();
  const auto* const button = find(body, "Подробнее…");
  ASSERT_NE(button, nullptr);
  button->action();
  EXPECT_NE(find(shown->body(), "tray: there"), nullptr) << "as it is by now";
}

TEST_F(OnboardingViewTest, HasNoButtonForADesktopThatTellsNothing) {
  EXPECT_EQ(find(view()->body(), "Подробнее…"), nullptr);
}

}  // namespace
}  // namespace kivra
