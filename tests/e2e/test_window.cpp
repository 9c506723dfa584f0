#include "test_window.h"

#include <X11/XKBlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XInput2.h>
#include <X11/keysym.h>
#include <poll.h>
#include <xkbcommon/xkbcommon.h>

#include <array>
#include <stdexcept>

#include "x_session.h"

namespace kivra::e2e {

namespace {

using namespace std::chrono_literals;

void removeLastScalar(std::string& text) {
  while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80) {
    text.pop_back();
  }
  if (!text.empty()) text.pop_back();
}

}  // namespace

TestWindow::TestWindow(const std::string& display) : display_(XOpenDisplay(display.c_str())) {
  if (display_ == nullptr) throw std::runtime_error("no display " + display);
  int opcode = 0;
  int error = 0;
  XkbQueryExtension(display_, &opcode, &xkbEvent_, &error, nullptr, nullptr);
  XkbSelectEvents(display_, XkbUseCoreKbd, XkbMapNotifyMask | XkbNewKeyboardNotifyMask,
                  XkbMapNotifyMask | XkbNewKeyboardNotifyMask);
  window_ = XCreateSimpleWindow(display_, DefaultRootWindow(display_), 100, 100, 400, 300, 0, 0,
                                WhitePixel(display_, DefaultScreen(display_)));
  XStoreName(display_, window_, "test window");
  XClassHint names{const_cast<char*>("editor"), const_cast<char*>("org.example.Editor")};
  XSetClassHint(display_, window_, &names);
  XSelectInput(display_, window_, KeyPressMask | KeyReleaseMask);
  watchFocus();
  // A window manager that is just starting overlooks requests: ask until it answers.
  if (!waitFor([this] {
        XMapWindow(display_, window_);
        XWindowAttributes attributes;
        XGetWindowAttributes(display_, window_, &attributes);
        return attributes.map_state == IsViewable;
      })) {
    throw std::runtime_error("the test window does not show");
  }
  focus();
}

TestWindow::~TestWindow() { XCloseDisplay(display_); }

void TestWindow::watchFocus() {
  int event = 0;
  int error = 0;
  XQueryExtension(display_, "XInputExtension", &inputOpcode_, &event, &error);
  int major = 2;
  int minor = 2;
  XIQueryVersion(display_, &major, &minor);
  std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
  XISetMask(bits.data(), XI_FocusOut);
  XIEventMask mask{.deviceid = XIAllMasterDevices, .mask_len = bits.size(), .mask = bits.data()};
  XISelectEvents(display_, window_, &mask, 1);
}

void TestWindow::focus() {
  const auto hasFocus = [this] {
    Window focused = None;
    int revert = 0;
    XGetInputFocus(display_, &focused, &revert);
    return focused == window_;
  };
  // The window manager gives new windows the focus by itself; without one nobody does.
  if (!waitFor(hasFocus, 1s)) XSetInputFocus(display_, window_, RevertToParent, CurrentTime);
  if (!waitFor(hasFocus)) throw std::runtime_error("the test window does not get the focus");
  read();
}

void TestWindow::giveFocusUp() {
  XSetInputFocus(display_, PointerRoot, RevertToPointerRoot, CurrentTime);
  XSync(display_, False);
}

void TestWindow::clear() {
  read();
  text_.clear();
  keys_.clear();
  focusLosses_ = 0;
}

bool TestWindow::wait(std::chrono::milliseconds timeout) {
  if (XPending(display_) > 0) return true;
  pollfd descriptor{.fd = ConnectionNumber(display_), .events = POLLIN, .revents = 0};
  return ::poll(&descriptor, 1, static_cast<int>(timeout.count())) > 0;
}

void TestWindow::read() {
  while (XPending(display_) > 0) {
    XEvent event;
    XNextEvent(display_, &event);
    take(event);
  }
}

void TestWindow::take(XEvent& event) {
  if (event.type == KeyPress || event.type == KeyRelease) {
    keys_.push_back({event.type == KeyPress, static_cast<std::uint8_t>(event.xkey.keycode),
                     event.xkey.state, std::chrono::steady_clock::now()});
    if (event.type == KeyPress) type(event.xkey);
  } else if (event.type == GenericEvent && event.xcookie.extension == inputOpcode_) {
    ++focusLosses_;
  } else if (event.type == MappingNotify) {
    XRefreshKeyboardMapping(&event.xmapping);
  } else if (event.type == xkbEvent_) {
    auto& notice = reinterpret_cast<XkbEvent&>(event);
    if (notice.any.xkb_type == XkbMapNotify) XkbRefreshKeyboardMapping(&notice.map);
  }
}

void TestWindow::type(XKeyEvent& event) {
  KeySym symbol = NoSymbol;
  XkbLookupKeySym(display_, static_cast<KeyCode>(event.keycode), event.state, nullptr, &symbol);
  if (symbol == XK_BackSpace) {
    removeLastScalar(text_);
    return;
  }
  if ((event.state & ControlMask) != 0) return;
  std::array<char, 8> bytes{};
  if (xkb_keysym_to_utf8(static_cast<xkb_keysym_t>(symbol), bytes.data(), bytes.size()) <= 0) {
    return;
  }
  if (bytes[0] == '\r') bytes[0] = '\n';
  if (static_cast<unsigned char>(bytes[0]) >= 0x20 || bytes[0] == '\n' || bytes[0] == '\t') {
    text_ += bytes.data();
  }
}

std::string TestWindow::textAfter(const std::string& expected) {
  read();
  while (text_ != expected && wait(2s)) read();
  return text_;
}

std::string TestWindow::textWhenQuiet(std::chrono::milliseconds quiet) {
  read();
  while (wait(quiet)) read();
  return text_;
}

bool TestWindow::waitForPress(Key& key, std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  const auto seen = keys_.size();
  while (true) {
    read();
    for (auto i = seen; i < keys_.size(); ++i) {
      if (!keys_[i].down) continue;
      key = keys_[i];
      return true;
    }
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    if (left <= 0ms || !wait(left)) return false;
  }
}

}  // namespace kivra::e2e
