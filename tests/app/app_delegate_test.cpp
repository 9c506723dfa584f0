#include "app/app_delegate.h"

#include <gtest/gtest.h>

#include "app/core_controller.h"
#include "platform/embedded/embedded_desktop.h"

namespace kivra {
namespace {

using namespace std::chrono_literals;

class AppDelegateTest : public testing::Test {
 protected:
  void wait(std::chrono::microseconds duration) { desktop_.time.runFor(duration); }
  bool isStarted() { return services_.coreController().hasEventTap(); }
  bool isIntercepting() { return services_.coreController().isIntercepting(); }

  std::vector<std::string> log_;
  embedded::EmbeddedDesktop desktop_{[this](const embedded::Json& effect) {
                                       if (effect.contains("log")) log_.push_back(effect["log"]);
                                     },
                                     nullptr};
  Services services_{desktop_.platform()};
  std::shared_ptr<AppDelegate> delegate_ = std::make_shared<AppDelegate>(services_);
};

TEST_F(AppDelegateTest, StartsTheCoreAtOnceWhenItMay) {
  delegate_->applicationDidFinishLaunching();
  EXPECT_TRUE(isIntercepting());
  EXPECT_FALSE(desktop_.session.isTerminated());
  EXPECT_TRUE(log_.empty());
}

TEST_F(AppDelegateTest, GivesWayToAnInstanceThatRuns) {
  desktop_.session.addInstance(4242);
  desktop_.session.setAccessibilityGranted(false);
  delegate_->applicationDidFinishLaunching();
  EXPECT_TRUE(desktop_.session.isTerminated());
  EXPECT_EQ(log_, std::vector<std::string>{"Kivra: уже запущен (pid [4242]), выходим"});
  desktop_.session.setAccessibilityGranted(true);
  wait(5s);
  EXPECT_FALSE(isStarted()) << "no further work, no poll either";
}

TEST_F(AppDelegateTest, StartsTheCoreAtTheFirstPollThatSeesBothPermissions) {
  desktop_.session.setAccessibilityGranted(false);
  desktop_.session.setInputMonitoringGranted(false);
  delegate_->applicationDidFinishLaunching();
  desktop_.session.setAccessibilityGranted(true);
  wait(3s);
  EXPECT_TRUE(services_.permissions().accessibilityGranted());
  EXPECT_FALSE(isStarted());
  desktop_.session.setInputMonitoringGranted(true);
  wait(1s - 1us);
  EXPECT_FALSE(isStarted());
  wait(1us);
  EXPECT_TRUE(isIntercepting());
  desktop_.session.setInputMonitoringGranted(false);
  wait(2s);
  EXPECT_TRUE(services_.permissions().areGranted()) << "the poll is over";
}

TEST_F(AppDelegateTest, KeepsOnePollAndItsCompletion) {
  desktop_.session.setAccessibilityGranted(false);
  std::string ran;
  services_.permissions().startPolling([&] { ran += "first "; });
  services_.permissions().startPolling([&] { ran += "second "; });
  desktop_.session.setAccessibilityGranted(true);
  EXPECT_FALSE(services_.permissions().areGranted());
  wait(3s);
  EXPECT_EQ(ran, "first ");
  services_.permissions().startPolling([&] { ran += "third "; });
  wait(1s - 1us);
  EXPECT_EQ(ran, "first ") << "the first check comes a second later, whatever is granted";
  wait(1us);
  EXPECT_EQ(ran, "first third ");
}

TEST_F(AppDelegateTest, KeepsARefusedTapWhenStartedAgain) {
  desktop_.events.setRefusesTaps(true);
  delegate_->applicationDidFinishLaunching();
  EXPECT_TRUE(isStarted());
  desktop_.events.setRefusesTaps(false);
  delegate_->applicationDidFinishLaunching();
  EXPECT_FALSE(isIntercepting());
  EXPECT_EQ(log_.size(), 1U);
}

TEST_F(AppDelegateTest, MakesOneSettingsWindowHoweverOftenItIsAskedFor) {
  delegate_->applicationDidFinishLaunching();
  bool isSecondMade = false;
  desktop_.keychain.setMeanwhile([&] {
    services_.showSettingsWindow();
    isSecondMade = desktop_.windows.find("settings") != nullptr;
  });
  services_.showSettingsWindow();
  EXPECT_FALSE(isSecondMade);
  const auto window = desktop_.windows.find("settings");
  ASSERT_NE(window, nullptr);
  EXPECT_TRUE(window->isShown);
  services_.showSettingsWindow();
  EXPECT_EQ(desktop_.windows.find("settings"), window);
}

TEST_F(AppDelegateTest, StartsNothingOnceItIsGone) {
  desktop_.session.setAccessibilityGranted(false);
  delegate_->applicationDidFinishLaunching();
  delegate_.reset();
  desktop_.session.setAccessibilityGranted(true);
  wait(2s);
  EXPECT_TRUE(desktop_.events.send({.keyCode = 35, .flags = 0xC0000}));
}

}  // namespace
}  // namespace kivra
