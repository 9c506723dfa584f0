#include "platform/session/desktop_notifications.h"

#include <gtest/gtest.h>

#include "event_loop.h"
#include "notification_server.h"
#include "platform/qt/main_thread.h"
#include "private_bus.h"

namespace kivra {
namespace {

class DesktopNotificationsTest : public testing::Test {
 protected:
  DesktopNotificationsTest() { bus_.enter(); }

  e2e::NotificationServer& server() {
    if (!server_) server_.emplace(bus_.environment().at("DBUS_SESSION_BUS_ADDRESS"));
    return *server_;
  }

  void show(const std::string& title, const std::string& button = "") {
    notifications_.show(
        {.title = title, .text = "<b>& co", .button = button, .action = [this, title] {
           pressed_ += title;
         }});
  }

  e2e::PrivateBus bus_;
  std::optional<e2e::NotificationServer> server_;
  std::string pressed_;
  DesktopNotifications notifications_{qt::callOnMainThread};
};

TEST_F(DesktopNotificationsTest, OneTakesThePlaceOfTheOther) {
  server();
  show("first", "Open");
  ASSERT_EQ(server().waitFor(1).size(), 1U);
  show("second");
  const auto shown = server().waitFor(2);
  ASSERT_EQ(shown.size(), 2U);
  EXPECT_EQ(shown[0].text, "&lt;b&gt;&amp; co");
  EXPECT_EQ(shown[0].buttons.back(), "Open");
  EXPECT_EQ(shown[0].replaced, 0U);
  EXPECT_EQ(shown[1].title, "second");
  EXPECT_TRUE(shown[1].buttons.empty());
  EXPECT_EQ(shown[1].replaced, 1U);
}

TEST_F(DesktopNotificationsTest, OnlyTheButtonOfTheLastActs) {
  server();
  show("first", "Open");
  server().waitFor(1);
  server().close();
  show("second", "Open");
  server().waitFor(2);
  server().pressButton();
  EXPECT_TRUE(qt::turnUntil([this] { return !pressed_.empty(); }));
  EXPECT_EQ(pressed_, "second");
}

TEST_F(DesktopNotificationsTest, WithoutAServerNothingIsShownUntilThereIsOne) {
  show("nobody sees this", "Open");
  show("nor this");
  server();
  // What has been tried before the server came is lost, and keeps nobody waiting.
  EXPECT_TRUE(qt::turnUntil([this] {
    show("seen");
    return !server().waitFor(1).empty();
  }));
}

}  // namespace
}  // namespace kivra
