#include "platform/x11/x11_workspace.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <stdexcept>

#include "platform/workspace_contract.h"
#include "platform/x11/xcb_pointer.h"
#include "platform/xkb/key_map.h"
#include "platform/xkb/virtual_keys.h"
#include "x_session.h"

namespace kivra::x11 {
namespace {

/// Plays the applications and the window manager.
class X11Front {
 public:
  X11Front() {
    ::setenv("DISPLAY", session_.display().c_str(), 1);
    if (!connection_.connect()) throw std::runtime_error(connection_.problem());
    others_ = xcb_connect(nullptr, nullptr);
  }
  ~X11Front() { xcb_disconnect(others_); }
  X11Front(const X11Front&) = delete;
  X11Front& operator=(const X11Front&) = delete;

  Workspace& workspace() { return workspace_; }

  void bringToFront(const std::optional<std::string>& identifier) {
    const auto window = xcb_generate_id(others_);
    xcb_create_window(others_, XCB_COPY_FROM_PARENT, window, root(), 0, 0, 10, 10, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    if (identifier) {
      const auto names = "editor" + std::string(1, '\0') + *identifier + '\0';
      xcb_change_property(others_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS,
                          XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(names.size()),
                          names.data());
    }
    tellActive(window);
  }
  void leave() { tellActive(0); }
  void grab(std::uint16_t keyCode, std::uint16_t modifiers) {
    xcb_grab_key(others_, 0, root(), modifiers,
                 static_cast<xcb_keycode_t>(evdevCode(keyCode).value() + xkbOffset),
                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    finish();
  }
  void readPassword(bool isRead) { isPassword_ = isRead; }
  std::vector<std::string> opened() { return opened_; }

 private:
  xcb_window_t root() { return xcb_setup_roots_iterator(xcb_get_setup(others_)).data->root; }
  void tellActive(xcb_window_t window) {
    xcb_change_property(others_, XCB_PROP_MODE_REPLACE, root(),
                        connection_.atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 32, 1, &window);
    finish();
  }
  /// Returns when the server has done all that was asked.
  void finish() {
    const XcbPointer<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(others_, xcb_get_input_focus(others_), nullptr));
  }

  e2e::XSession session_{{.windowManager = false,
                          .accessibility = false,
                          .server = {.kind = e2e::XServer::Kind::xvnc}}};
  xcb_connection_t* others_ = nullptr;
  bool isPassword_ = false;
  std::vector<std::string> opened_;
  X11Connection connection_;
  X11Workspace workspace_{connection_,
                          {.isPasswordFocused = [this] { return isPassword_; },
                           .activeWindowChanged = [] {},
                           .open = [this](std::string_view url) { opened_.emplace_back(url); }}};
};
INSTANTIATE_TYPED_TEST_SUITE_P(X11, WorkspaceContract, X11Front);

TEST(X11Workspace, TellsOfACombinationThatAnotherClientHasGrabbed) {
  X11Front front;
  front.grab(key_codes::z, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1);
  const auto owner = [&](std::uint64_t flags) {
    return front.workspace().shortcutOwner({.keyCode = key_codes::z, .flags = flags});
  };
  EXPECT_NE(owner(event_flags::control | event_flags::option), "");
  EXPECT_EQ(owner(event_flags::control), "");
}

}  // namespace
}  // namespace kivra::x11
