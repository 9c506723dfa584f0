#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ibus/client/bus_link.h"

namespace kivra::ibus {

/// A key that IBus asks the engine about. The application has it once it is answered.
struct AskedKey {
  std::uint16_t evdev = 0;
  bool isDown = true;
  std::uint32_t state = 0;  ///< IBus's modifiers, before the key
  Message question;
};

/// What a text field says of itself: numbers of IBus.
struct FieldContent {
  std::uint32_t purpose = 0;
  std::uint32_t hints = 0;
};

/// What IBus tells an engine.
class EngineListener {
 public:
  virtual ~EngineListener() = default;

  virtual void askKey(AskedKey key) = 0;
  /// A field of this client of IBus's ("gnome-shell" for all that a compositor serves) has the
  /// focus.
  virtual void enterField(std::string_view client) = 0;
  virtual void leaveField() = 0;
  virtual void takeContent(const FieldContent& content) = 0;
};

/// The engine that Kivra gives the session's IBus, on a connection of its own: while that lasts,
/// keys are asked about. Never waits after its construction.
class Engine {
 public:
  /// Modifiers of IBus's that are used here.
  static constexpr std::uint32_t released = 1U << 30;

  /// Throws std::runtime_error, with a line for the user, when there is no IBus.
  explicit Engine(EngineListener& listener);

  int fd() const { return sd_bus_get_fd(bus_.get()); }
  /// False when IBus is gone.
  bool dispatch() { return process(bus_.get()); }
  void flush() { sd_bus_flush(bus_.get()); }
  /// Waits until something comes, at most so many microseconds.
  void wait(std::uint64_t patience) { sd_bus_wait(bus_.get(), patience); }

  /// IBus has the engine in use.
  bool isEnabled() const { return isEnabled_; }

  /// The key goes on to the application, or does not.
  static void answer(const AskedKey& key, bool isConsumed);

  // What is sent here and answered above arrives in the order of the calls.

  /// A key that nobody has typed; `symbol` and `state` are what it gives, as of xkbcommon and IBus.
  void forward(std::uint16_t evdev, std::uint32_t symbol, std::uint32_t state);
  void commit(const std::string& text);

 private:
  static int handle(sd_bus_message* message, void* self, sd_bus_error* error);
  void take(sd_bus_message* message, std::string_view member);
  void takeFocus(sd_bus_message* message, std::string_view member);
  void askKey(sd_bus_message* message);
  void registerComponent();

  EngineListener& listener_;
  Bus bus_;
  bool isEnabled_ = false;
};

}  // namespace kivra::ibus
