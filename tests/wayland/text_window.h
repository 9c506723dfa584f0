#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/wayland/client/connection.h"
#include "platform/wayland/guard/field_watch.h"

namespace kivra::e2e {

/// A window that notes every key that reaches it and keeps the text that a plain editor would have;
/// read by a thread of its own, as long as it lives.
class TextWindow {
 public:
  struct Key {
    std::uint16_t evdev = 0;
    bool isDown = true;
    std::chrono::steady_clock::time_point arrival{};
  };

  using Content = wayland::FieldWatch::Content;

  /// Opens the window and waits until it has the focus. With content it is a field that tells the
  /// input method of itself, without it an application that does not.
  explicit TextWindow(std::optional<Content> content = std::nullopt);
  ~TextWindow();
  TextWindow(const TextWindow&) = delete;
  TextWindow& operator=(const TextWindow&) = delete;

  /// Waits until the text is this, or has stopped changing for two seconds; answers the text.
  std::string textAfter(const std::string& expected) const;
  std::string text() const;
  std::vector<Key> keys() const;
  bool hasFocus() const;
  bool isAnyKeyDown() const;
  /// Whether it tells the input method of itself.
  bool isField() const;
  /// How often the compositor has learnt from the field that it has the focus.
  int fieldEntries() const;
  void clear();

 private:
  class Client;

  std::unique_ptr<Client> client_;
};

}  // namespace kivra::e2e
