#include "platform/session/environment_locale.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string_view>
#include <utility>

namespace kivra {

namespace {

std::string variable(const char* name) {
  const auto* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::string localeName() {
  for (const auto* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (auto value = variable(name); !value.empty()) return value;
  }
  return "";
}

/// "ru-RU" of "ru_RU.UTF-8"; empty for the locale that has no language.
std::string identifierOf(std::string_view locale) {
  std::string identifier(locale.substr(0, locale.find_first_of(".@")));
  if (identifier == "C" || identifier == "POSIX") return "";
  std::replace(identifier.begin(), identifier.end(), '_', '-');
  return identifier;
}

}  // namespace

std::vector<std::string> EnvironmentLocale::preferredLanguages() {
  std::vector<std::string> languages;
  const auto add = [&](std::string identifier) {
    if (identifier.empty()) return;
    if (std::find(languages.begin(), languages.end(), identifier) != languages.end()) return;
    languages.push_back(std::move(identifier));
  };
  const auto locale = identifierOf(localeName());
  if (locale.empty()) return languages;  // gettext, too, ignores LANGUAGE in the locale C
  std::istringstream list(variable("LANGUAGE"));
  for (std::string entry; std::getline(list, entry, ':');) add(identifierOf(entry));
  add(locale);
  return languages;
}

}  // namespace kivra
