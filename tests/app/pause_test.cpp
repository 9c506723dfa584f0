#include "app/pause.h"

#include <gtest/gtest.h>

#include "app/kivra_app.h"
#include "platform/embedded/embedded_desktop.h"

namespace kivra {
namespace {

using namespace std::chrono_literals;

class PauseTest : public testing::Test {
 protected:
  void pause(std::chrono::seconds duration) {
    app_->services.pause().begin(duration,
                                 [this](bool isEnabled) { app_->delegate->setEnabled(isEnabled); });
  }
  void start() {
    app_ = std::make_unique<KivraApp>(desktop_.platform());
    app_->delegate->applicationDidFinishLaunching();
  }
  bool isOn() { return app_->services.settings().isEnabled(); }
  void wait(std::chrono::microseconds time) { desktop_.time.runFor(time); }

  std::string icon_;
  embedded::EmbeddedDesktop desktop_{[this](const embedded::Json& effect) {
                                       if (effect.contains("icon")) {
                                         icon_ += effect["icon"]["dimmed"] ? "-" : "+";
                                       }
                                     },
                                     nullptr};
  std::unique_ptr<KivraApp> app_;
};

TEST_F(PauseTest, EndsByItselfAndTheIconShowsIt) {
  start();
  pause(60s);
  EXPECT_FALSE(isOn());
  wait(60s - 1us);
  EXPECT_FALSE(isOn());
  wait(1us);
  EXPECT_TRUE(isOn());
  EXPECT_EQ(icon_, "-+");
  app_->delegate->setEnabled(false);
  wait(10min);
  EXPECT_FALSE(isOn()) << "a pause that is over switches nothing on";
}

TEST_F(PauseTest, IsEndedByWhoSwitchesTheProgramOn) {
  start();
  pause(60s);
  wait(10s);
  app_->services.settings().isEnabled.set(true);
  wait(1s);
  app_->services.settings().isEnabled.set(false);
  wait(10min);
  EXPECT_FALSE(isOn());
}

TEST_F(PauseTest, GivesWayToANewOne) {
  start();
  pause(60s);
  wait(30s);
  pause(90s);
  wait(89s);
  EXPECT_FALSE(isOn());
  wait(2s);
  EXPECT_TRUE(isOn());
}

TEST_F(PauseTest, DoesNotOutliveTheProgram) {
  start();
  pause(1h);
  app_.reset();
  desktop_.time.dropAll();
  start();
  EXPECT_TRUE(isOn());
  app_->delegate->setEnabled(false);
  app_.reset();
  desktop_.time.dropAll();
  start();
  EXPECT_FALSE(isOn()) << "switched off by hand";
}

}  // namespace
}  // namespace kivra
