#include "platform/wayland/wayland_workspace.h"

#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "guarded_session.h"
#include "platform/wayland/client/connection.h"
#include "platform/wayland/client/toplevel_watch.h"
#include "platform/workspace_contract.h"
#include "x_session.h"

namespace kivra::wayland {
namespace {

/// The process whose window has the focus in sway's tree; 0 when none has.
pid_t focusedProcess(const nlohmann::json& node) {
  if (node["focused"].get<bool>()) return node.value("pid", 0);
  for (const auto* list : {"nodes", "floating_nodes"}) {
    for (const auto& child : node[list]) {
      if (const auto found = focusedProcess(child)) return found;
    }
  }
  return 0;
}

class WaylandWorkspaceTest : public ::testing::Test {
 protected:
  WaylandWorkspaceTest() { compositor_.roundtrip(); }

  bool becomesActive(const std::optional<std::string>& application) {
    return e2e::waitFor([&] {
      compositor_.dispatch();
      return toplevels_.activeApplication() == application;
    });
  }

  std::unique_ptr<e2e::ChildProcess> openWindow(const std::string& application) {
    toplevels_.takeMove();
    auto window = sway_.start({"foot", "--app-id", application, "cat"}, application);
    // One of the same application may have been active before.
    auto hasMoved = false;
    EXPECT_TRUE(e2e::waitFor([&] {
      compositor_.dispatch();
      hasMoved = toplevels_.takeMove() || hasMoved;
      return hasMoved && toplevels_.activeApplication() == application;
    })) << sway_.readFile(application);
    return window;
  }

  e2e::EnteredSway sway_{{}};
  Connection compositor_;
  ToplevelWatch toplevels_{compositor_};
  bool isPasswordFocused_ = false;
  WaylandWorkspace workspace_{toplevels_,
                              {.readEvents = [this] { compositor_.dispatch(); },
                               .ownApplication = "own",
                               .isPasswordFocused = [this] { return isPasswordFocused_; },
                               .open = [](std::string_view) {}}};
};

TEST_F(WaylandWorkspaceTest, TellsTheActiveWindowsApplication) {
  EXPECT_EQ(workspace_.frontmostBundleIdentifier(), std::nullopt);
  const auto editor = openWindow("editor");
  EXPECT_EQ(workspace_.frontmostBundleIdentifier(), "editor");
  auto terminal = openWindow("org.gnome.Terminal");
  EXPECT_EQ(workspace_.frontmostBundleIdentifier(), "com.apple.Terminal");
  toplevels_.takeMove();
  sway_.message({"[app_id=editor]", "focus"});
  EXPECT_TRUE(becomesActive("editor"));
  EXPECT_TRUE(toplevels_.takeMove());
  sway_.message({"[app_id=org.gnome.Terminal]", "focus"});
  EXPECT_TRUE(becomesActive("org.gnome.Terminal"));
  terminal.reset();
  EXPECT_TRUE(becomesActive("editor"));
}

TEST_F(WaylandWorkspaceTest, KeepsPasswordsAndTheProgramsOwnWindows) {
  const auto editor = openWindow("editor");
  EXPECT_FALSE(workspace_.isSecureEventInputEnabled());
  isPasswordFocused_ = true;
  EXPECT_TRUE(workspace_.isSecureEventInputEnabled());
  isPasswordFocused_ = false;
  const auto own = openWindow("own");
  EXPECT_TRUE(workspace_.isSecureEventInputEnabled());
  sway_.message({"[app_id=editor]", "focus"});
  EXPECT_TRUE(becomesActive("editor"));
  EXPECT_FALSE(workspace_.isSecureEventInputEnabled());
}

TEST_F(WaylandWorkspaceTest, BringsTheWindowThatWasOpenedLastToTheFront) {
  const Owned<wl_seat> seat(compositor_.bind<wl_seat>(wl_seat_interface), wl_seat_destroy);
  const auto first = openWindow("own");
  const auto second = openWindow("own");
  const auto editor = openWindow("editor");
  toplevels_.activateLast("own", seat.get());
  compositor_.flush();
  EXPECT_TRUE(becomesActive("own"));
  EXPECT_EQ(focusedProcess(nlohmann::json::parse(sway_.message({"-t", "get_tree"}))),
            second->pid());
}

/// Windows of foot are the applications.
class SwayFront {
 public:
  SwayFront() { compositor_.roundtrip(); }

  Workspace& workspace() { return workspace_; }
  void bringToFront(const std::optional<std::string>& identifier) {
    const auto application = identifier.value_or("");
    windows_.push_back(sway_.start({"foot", "--app-id", application, "cat"}));
    awaitActive(application);
  }
  void leave() {
    sway_.message({"workspace", "2"});
    awaitActive(std::nullopt);
  }
  void readPassword(bool isRead) { isPassword_ = isRead; }
  std::vector<std::string> opened() { return opened_; }

 private:
  void awaitActive(const std::optional<std::string>& application) {
    EXPECT_TRUE(e2e::waitFor([&] {
      compositor_.dispatch();
      return toplevels_.activeApplication() == application;
    })) << application.value_or("nobody");
  }

  e2e::EnteredSway sway_{{}};
  Connection compositor_;
  ToplevelWatch toplevels_{compositor_};
  bool isPassword_ = false;
  std::vector<std::string> opened_;
  std::vector<std::unique_ptr<e2e::ChildProcess>> windows_;
  WaylandWorkspace workspace_{
      toplevels_,
      {.readEvents = [this] { compositor_.dispatch(); },
       .ownApplication = "own",
       .isPasswordFocused = [this] { return isPassword_; },
       .open = [this](std::string_view url) { opened_.emplace_back(url); }}};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Wayland, WorkspaceContract, SwayFront);

}  // namespace
}  // namespace kivra::wayland
