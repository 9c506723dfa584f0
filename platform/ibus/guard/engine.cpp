#include "platform/ibus/guard/engine.h"

#include <stdexcept>
#include <utility>

namespace kivra::ibus {

namespace {

constexpr auto bus = "org.freedesktop.IBus";
constexpr auto busPath = "/org/freedesktop/IBus";
constexpr auto engineName = "kivra";
constexpr auto enginePath = "/app/kivra/Engine";
constexpr auto engineInterface = "org.freedesktop.IBus.Engine";

// IBus answers a registration when it has read it.
constexpr std::uint64_t answerTime = 2'000'000;  // us

}  // namespace

Engine::Engine(EngineListener& listener) : listener_(listener), bus_(connectTo(ibusAddress())) {
  if (!bus_) throw std::runtime_error("нет IBus");
  sd_bus_add_filter(bus_.get(), nullptr, &Engine::handle, this);
  registerComponent();
}

void Engine::registerComponent() {
  sd_bus_message* made = nullptr;
  sd_bus_message_new_method_call(bus_.get(), &made, bus, busPath, bus, "RegisterComponent");
  const Message call(made);
  // IBusComponent and IBusEngineDesc as they go over the wire; the layout stays the shell's.
  sd_bus_message_append(made, "v", "(sa{sv}ssssssssavav)", "IBusComponent", 0, "app.kivra.IBus",
                        "Kivra", "1", "", "Kivra", "", "", "kivra", 0, 1,
                        "(sa{sv}ssssssssussssssss)", "IBusEngineDesc", 0, engineName, "Kivra", "",
                        "ru", "", "Kivra", "", "default", 0U, "", "", "", "", "", "", "", "");
  if (sd_bus_call(bus_.get(), made, answerTime, nullptr, nullptr) < 0) {
    throw std::runtime_error("IBus не отвечает");
  }
}

int Engine::handle(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
  if (sd_bus_message_is_method_call(message, nullptr, nullptr) == 0) return 0;
  static_cast<Engine*>(self)->take(message, sd_bus_message_get_member(message));
  return 1;
}

void Engine::take(sd_bus_message* message, std::string_view member) {
  if (member == "ProcessKeyEvent") {
    askKey(message);
  } else if (member == "CreateEngine") {
    sd_bus_reply_method_return(message, "o", enginePath);
  } else if (member == "Get") {
    // The one property that an engine has to tell: it wants to know whose field it is.
    sd_bus_reply_method_return(message, "v", "b", 1);
  } else if (member == "GetAll") {
    sd_bus_reply_method_return(message, "a{sv}", 1, "FocusId", "b", 1);
  } else {
    takeFocus(message, member);
    sd_bus_reply_method_return(message, "");
  }
}

void Engine::takeFocus(sd_bus_message* message, std::string_view member) {
  if (member == "Enable") isEnabled_ = true;
  if (member == "Disable") isEnabled_ = false;
  if (member == "FocusInId") {
    const char* context = nullptr;
    const char* client = nullptr;
    if (sd_bus_message_read(message, "ss", &context, &client) >= 0) listener_.enterField(client);
  } else if (member == "FocusIn") {
    listener_.enterField({});
  } else if (member == "FocusOut" || member == "FocusOutId" || member == "Disable") {
    listener_.leaveField();
  } else if (member == "Set") {
    const char* interface = nullptr;
    const char* name = nullptr;
    FieldContent content;
    if (sd_bus_message_read(message, "ss", &interface, &name) >= 0 &&
        std::string_view(name) == "ContentType" &&
        sd_bus_message_read(message, "v", "(uu)", &content.purpose, &content.hints) >= 0) {
      listener_.takeContent(content);
    }
  }
}

void Engine::askKey(sd_bus_message* message) {
  std::uint32_t symbol = 0;
  std::uint32_t code = 0;
  std::uint32_t state = 0;
  if (sd_bus_message_read(message, "uuu", &symbol, &code, &state) < 0) return;
  listener_.askKey({.evdev = static_cast<std::uint16_t>(code),
                    .isDown = (state & released) == 0,
                    .state = state,
                    .question = Message(sd_bus_message_ref(message))});
}

void Engine::answer(const AskedKey& key, bool isConsumed) {
  sd_bus_reply_method_return(key.question.get(), "b", static_cast<int>(isConsumed));
}

void Engine::forward(std::uint16_t evdev, std::uint32_t symbol, std::uint32_t state) {
  sd_bus_emit_signal(bus_.get(), enginePath, engineInterface, "ForwardKeyEvent", "uuu", symbol,
                     std::uint32_t{evdev}, state);
}

void Engine::commit(const std::string& text) {
  sd_bus_emit_signal(bus_.get(), enginePath, engineInterface, "CommitText", "v", "(sa{sv}sv)",
                     "IBusText", 0, text.c_str(), "(sa{sv}av)", "IBusAttrList", 0, 0);
}

}  // namespace kivra::ibus
