#include "keyboard.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>
#include <xorg/xf86-input-inputtest-protocol.h>

#include <array>
#include <cstddef>
#include <span>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "unix_socket.h"

namespace kivra::e2e {

namespace {

class Stream {
 public:
  explicit Stream(const std::string& path) : fd_(connectTo(path)) {
    if (fd_ < 0) throw std::runtime_error("nobody listens at " + path);
  }
  ~Stream() { ::close(fd_); }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  template <class T>
  void send(const T& message) {
    sendBytes(std::as_bytes(std::span(&message, 1)));
  }

  void sendBytes(std::span<const std::byte> bytes) {
    if (::send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL) !=
        static_cast<ssize_t>(bytes.size())) {
      throw std::runtime_error("the keyboard is gone");
    }
  }

  std::string receive(std::size_t size) {
    std::string bytes(size, '\0');
    if (::recv(fd_, bytes.data(), size, MSG_WAITALL) != static_cast<ssize_t>(size)) {
      throw std::runtime_error("no answer from the X server's keyboard");
    }
    return bytes;
  }

 private:
  int fd_;
};

class XorgKeyboard : public Keyboard {
 public:
  explicit XorgKeyboard(const std::string& socket) : stream_(socket) {
    stream_.send(xf86ITEventClientVersion{
        .header = {.length = sizeof(xf86ITEventClientVersion), .type = XF86IT_EVENT_CLIENT_VERSION},
        .major = XF86IT_PROTOCOL_VERSION_MAJOR,
        .minor = XF86IT_PROTOCOL_VERSION_MINOR});
    stream_.receive(sizeof(xf86ITResponseServerVersion));
  }

  void key(std::uint8_t code, bool isDown) override {
    stream_.send(
        xf86ITEventKey{.header = {.length = sizeof(xf86ITEventKey), .type = XF86IT_EVENT_KEY},
                       .key_code = code,
                       .is_press = isDown});
  }

  void waitUntilRead() override {
    stream_.send(xf86ITEventWaitForSync{
        .header = {.length = sizeof(xf86ITEventWaitForSync), .type = XF86IT_EVENT_WAIT_FOR_SYNC}});
    stream_.receive(sizeof(xf86ITResponseSyncFinished));
  }

 private:
  Stream stream_;
};

/// RFC 6143, security type "None".
class VncKeyboard : public Keyboard {
 public:
  explicit VncKeyboard(const std::string& socket) : stream_(socket) {
    const std::string_view version = "RFB 003.008\n";
    stream_.receive(version.size());
    sendText(version);
    const auto types = stream_.receive(1);
    stream_.receive(static_cast<unsigned char>(types[0]));
    sendText("\1");
    stream_.receive(4);  // the result
    sendText("\1");      // shared
    const auto screen = stream_.receive(24);
    stream_.receive(ntohl(*reinterpret_cast<const std::uint32_t*>(&screen[20])));  // its name
    constexpr std::int32_t extendedKeys = -258;
    sendText(std::string_view("\2\0\0\1", 4));
    stream_.send(htonl(static_cast<std::uint32_t>(extendedKeys)));
  }

  void key(std::uint8_t code, bool isDown) override {
    struct {
      std::uint8_t type = 255;
      std::uint8_t subtype = 0;
      std::uint16_t isDown = 0;
      std::uint32_t symbol = 0;
      std::uint32_t place = 0;  // the code of a PC's keyboard, set 1
    } message;
    static_assert(sizeof message == 12);
    message.isDown = htons(isDown ? 1 : 0);
    message.place = htonl(placeOf(code));
    stream_.send(message);
  }

 private:
  static std::uint32_t placeOf(std::uint8_t code) {
    constexpr std::uint8_t offset = 8;
    switch (code) {
      case 105:  // the right Control
        return 0x9D;
      case 108:  // the right Alt
        return 0xB8;
      case 116:  // Down
        return 0xD0;
      case 127:  // Pause
        return 0xC6;
      case 133:  // the left Super
        return 0xDB;
      default:
        return code - offset;
    }
  }

  void sendText(std::string_view text) {
    stream_.sendBytes(std::as_bytes(std::span(text.data(), text.size())));
  }

  Stream stream_;
};

class XtestKeyboard : public Keyboard {
 public:
  explicit XtestKeyboard(const std::string& display) : display_(XOpenDisplay(display.c_str())) {
    if (display_ == nullptr) throw std::runtime_error("no display " + display);
  }
  ~XtestKeyboard() override { XCloseDisplay(display_); }
  XtestKeyboard(const XtestKeyboard&) = delete;
  XtestKeyboard& operator=(const XtestKeyboard&) = delete;

  void key(std::uint8_t code, bool isDown) override {
    XTestFakeKeyEvent(display_, code, isDown ? True : False, CurrentTime);
    XFlush(display_);
  }

 private:
  Display* display_;
};

}  // namespace

std::unique_ptr<Keyboard> openXorgKeyboard(const std::string& socket) {
  return std::make_unique<XorgKeyboard>(socket);
}

std::unique_ptr<Keyboard> openVncKeyboard(const std::string& socket) {
  return std::make_unique<VncKeyboard>(socket);
}

std::unique_ptr<Keyboard> openXtestKeyboard(const std::string& display) {
  return std::make_unique<XtestKeyboard>(display);
}

}  // namespace kivra::e2e
