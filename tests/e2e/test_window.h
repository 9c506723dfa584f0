#pragma once

#include <X11/Xlib.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace kivra::e2e {

/// A window that notes every key that reaches it and keeps the text that a plain editor would have.
class TestWindow {
 public:
  struct Key {
    bool down = true;
    std::uint8_t code = 0;
    unsigned int state = 0;
    std::chrono::steady_clock::time_point arrival;
  };

  /// Opens the window and waits until it has the focus.
  explicit TestWindow(const std::string& display);
  ~TestWindow();
  TestWindow(const TestWindow&) = delete;
  TestWindow& operator=(const TestWindow&) = delete;

  Window window() const { return window_; }
  void focus();

  /// Leaves the focus to whatever window the pointer is in.
  void giveFocusUp();

  /// Takes in what has arrived.
  void read();

  /// Waits until the text is this, or has stopped changing for two seconds; answers the text.
  std::string textAfter(const std::string& expected);

  /// Waits until nothing has arrived for this long; answers the text.
  std::string textWhenQuiet(std::chrono::milliseconds quiet = std::chrono::milliseconds(300));

  /// Waits for the next press; false when none comes in time.
  bool waitForPress(Key& key, std::chrono::milliseconds timeout);

  const std::string& text() const { return text_; }
  const std::vector<Key>& keys() const { return keys_; }
  /// How often programs that read XInput 2 events saw the focus leave.
  int focusLosses() const { return focusLosses_; }
  void clear();

 private:
  bool wait(std::chrono::milliseconds timeout);
  void take(XEvent& event);
  void type(XKeyEvent& event);
  void watchFocus();

  Display* display_;
  Window window_;
  int xkbEvent_ = 0;
  int inputOpcode_ = 0;
  std::string text_;
  std::vector<Key> keys_;
  int focusLosses_ = 0;
};

}  // namespace kivra::e2e
