#include "app/event_tap.h"

#include <gtest/gtest.h>

#include "platform/embedded/embedded_desktop.h"

namespace kivra {
namespace {

class EventTapTest : public testing::Test {
 protected:
  bool send(std::int64_t userData) {
    return desktop_.events.send(
        {.type = EventType::keyDown, .keyCode = 35, .flags = 0xC0000, .userData = userData});
  }

  std::vector<std::string> log_;
  int handled_ = 0;
  bool consumes_ = false;
  embedded::EmbeddedDesktop desktop_{[this](const embedded::Json& effect) {
                                       if (effect.contains("log"))
                                         log_.push_back(effect["log"].get<std::string>());
                                     },
                                     nullptr};
  EventTap tap_{desktop_.events, desktop_.session, [this](const Event&, EventType) {
                  ++handled_;
                  return consumes_;
                }};
};

TEST_F(EventTapTest, DropsWhatTheHandlerConsumesAndLetsItsOwnEventsPass) {
  tap_.start();
  EXPECT_TRUE(send(0));
  consumes_ = true;
  EXPECT_FALSE(send(0));
  EXPECT_EQ(handled_, 2);
  EXPECT_TRUE(send(19286));
  EXPECT_EQ(handled_, 2);
  EXPECT_FALSE(send(19285));
}

TEST_F(EventTapTest, CanBeTriedAgainAfterARefusal) {
  desktop_.events.setRefusesTaps(true);
  tap_.start();
  EXPECT_FALSE(tap_.isRunning());
  EXPECT_EQ(log_,
            (std::vector<std::string>{
                "Kivra: не удалось создать CGEventTap (проверь Accessibility/Input Monitoring)"}));
  desktop_.events.setRefusesTaps(false);
  tap_.start();
  tap_.start();
  EXPECT_TRUE(tap_.isRunning());
  EXPECT_EQ(log_.size(), 1U);
  send(0);
  EXPECT_EQ(handled_, 1) << "a second start installs no second tap";
  tap_.stop();
  EXPECT_FALSE(tap_.isRunning());
  send(0);
  EXPECT_EQ(handled_, 1);
}

TEST_F(EventTapTest, IsSwitchedOnAgainAtOnce) {
  tap_.start();
  for (const auto reason : {EventType::tapDisabledByTimeout, EventType::tapDisabledByUserInput}) {
    desktop_.events.disableTap(reason);
    send(0);
  }
  EXPECT_EQ(handled_, 2);
  EXPECT_TRUE(log_.empty());
}

}  // namespace
}  // namespace kivra
