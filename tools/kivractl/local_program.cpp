#include "local_program.h"

#include <charconv>
#include <iostream>

#include "platform/session/application_identifiers.h"
#include "platform/x11/x11_workspace.h"
#include "support/json.h"

namespace kivra::control {

namespace {

/// Asked of the X server itself.
std::optional<std::string> frontmostIdentifier() {
  x11::X11Connection connection;
  connection.connect();
  x11::X11Workspace workspace(connection, {.isPasswordFocused = [] { return false; },
                                           .activeWindowChanged = [] {},
                                           .open = [](std::string_view) {}});
  return workspace.frontmostBundleIdentifier();
}

}  // namespace

LocalProgram::LocalProgram()
    : database_(
          userDefaultsPath(), [](std::string_view line) { std::cerr << line << '\n'; },
          DefaultsWaits{std::chrono::seconds(5), std::chrono::seconds(5),
                        std::chrono::seconds(0)}) {}

Reply LocalProgram::carryOut(const Request& request) {
  const auto replacementStore = [this]() -> ReplacementStore& { return replacements(); };
  return control::carryOut({.settings = settings_,
                            .exceptions = exceptions_,
                            .replacements = replacementStore,
                            .frontmostIdentifier = frontmostIdentifier,
                            .identifierOf = bundleIdentifier,
                            .namesOf = programNames,
                            .isSaved = [this] { return database_.isSaved(); }},
                           request);
}

ReplacementStore& LocalProgram::replacements() {
  if (!replacements_) replacements_.emplace(defaults_);
  return *replacements_;
}

std::optional<LayoutNames> parsedLayouts(const std::string& reply) {
  const auto list = json::parse(reply);
  if (!list || !list->is_array()) return std::nullopt;
  LayoutNames layouts;
  for (const auto& layout : *list) {
    const auto id = json::stringMember(layout, "id");
    const auto language = json::stringMember(layout, "language");
    if (!id || !language) return std::nullopt;
    layouts.emplace_back(*id, *language);
  }
  return layouts;
}

int secondsOf(const std::string& text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < 0 || number > 3600) {
    throw Failure{Reply::wrongUsage, "not a number of seconds: " + text};
  }
  return number;
}

}  // namespace kivra::control
