#include "screen_reader.h"

#include <stdexcept>

#include "x_session.h"

namespace kivra::e2e {

namespace {

constexpr auto accessible = "org.a11y.atspi.Accessible";

// Numbers of AT-SPI's states.
constexpr unsigned focusableState = 11;
constexpr unsigned focusedState = 12;
constexpr unsigned showingState = 25;

std::string textOf(const Variant& reply) {
  if (!reply) return "";
  const char* text = "";
  g_variant_get(reply.get(), "(&s)", &text);
  return text;
}

std::string stringOf(const Variant& value) {
  return value ? g_variant_get_string(value.get(), nullptr) : "";
}

std::string accessibilityBus(const std::string& sessionBus) {
  return textOf(
      BusClient(sessionBus).call({"org.a11y.Bus", "/org/a11y/bus"}, "org.a11y.Bus", "GetAddress"));
}

}  // namespace

ScreenReader::ScreenReader(const std::string& sessionBus, std::string application)
    : application_(std::move(application)), bus_(accessibilityBus(sessionBus)) {}

std::vector<ScreenReader::Control> ScreenReader::controls() const {
  std::vector<Control> all;
  for (const auto& program :
       children({"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"})) {
    if (read(program).name != application_) continue;
    for (const auto& window : children(program)) collect(window, all);
  }
  return all;
}

void ScreenReader::collect(const BusObject& object, std::vector<Control>& controls) const {
  controls.push_back(read(object));
  for (const auto& child : children(object)) collect(child, controls);
}

std::vector<BusObject> ScreenReader::children(const BusObject& object) const {
  std::vector<BusObject> result;
  const auto reply = bus_.call(object, accessible, "GetChildren");
  if (!reply) return result;
  GVariantIter* iterator = nullptr;
  const char* name = nullptr;
  const char* path = nullptr;
  g_variant_get(reply.get(), "(a(so))", &iterator);
  while (g_variant_iter_next(iterator, "(&s&o)", &name, &path) != FALSE) {
    result.push_back({name, path});
  }
  g_variant_iter_free(iterator);
  return result;
}

ScreenReader::Control ScreenReader::read(const BusObject& object) const {
  Control control{
      .object = object, .role = textOf(bus_.call(object, accessible, "GetRoleName")), .name = ""};
  control.name = stringOf(bus_.property(object, accessible, "Name"));
  control.description = stringOf(bus_.property(object, accessible, "Description"));
  const auto reply = bus_.call(object, accessible, "GetState");
  if (!reply) return control;
  GVariantIter* iterator = nullptr;
  g_variant_get(reply.get(), "(au)", &iterator);
  guint32 states = 0;
  g_variant_iter_next(iterator, "u", &states);
  g_variant_iter_free(iterator);
  const auto has = [states](unsigned state) { return (states >> state & 1U) != 0; };
  control.isShowing = has(showingState);
  control.isFocusable = has(focusableState);
  control.isFocused = has(focusedState);
  return control;
}

ScreenReader::Control ScreenReader::waitFor(const std::string& role,
                                            const std::string& name) const {
  std::optional<Control> found;
  e2e::waitFor([&] {
    for (const auto& control : controls()) {
      if (control.isShowing && control.role == role && control.name == name) found = control;
    }
    return found.has_value();
  });
  if (!found) throw std::runtime_error("no " + role + " " + name + "; there are" + description());
  return *found;
}

bool ScreenReader::getsFocus(const Control& control) const {
  return e2e::waitFor([&] { return read(control.object).isFocused; });
}

void ScreenReader::press(const Control& control) const {
  bus_.call(control.object, "org.a11y.atspi.Action", "DoAction", g_variant_new("(i)", 0));
}

bool ScreenReader::focus(const Control& control) const {
  return e2e::waitFor([&] {
    bus_.call(control.object, "org.a11y.atspi.Component", "GrabFocus");
    return read(control.object).isFocused;
  });
}

void ScreenReader::setCaret(const Control& control, int offset) const {
  bus_.call(control.object, "org.a11y.atspi.Text", "SetCaretOffset", g_variant_new("(i)", offset));
}

std::string ScreenReader::text(const Control& control) const {
  return textOf(
      bus_.call(control.object, "org.a11y.atspi.Text", "GetText", g_variant_new("(ii)", 0, -1)));
}

void ScreenReader::setText(const Control& control, const std::string& text) const {
  bus_.call(control.object, "org.a11y.atspi.EditableText", "SetTextContents",
            g_variant_new("(s)", text.c_str()));
}

std::string ScreenReader::description() const {
  std::string all;
  for (const auto& control : controls()) {
    if (control.isShowing) all += "\n  " + control.role + ": " + control.name;
  }
  return all;
}

}  // namespace kivra::e2e
