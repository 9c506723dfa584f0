#include "ui/language_picker.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace kivra {

namespace {

struct Language {
  const char* code;
  const char* name;  ///< in the language itself
};

constexpr std::array<Language, 11> languages = {{
    {"EN-US", "English"},
    {"DE", "Deutsch"},
    {"FR", "Français"},
    {"ES", "Español"},
    {"IT", "Italiano"},
    {"PT-PT", "Português"},
    {"NL", "Nederlands"},
    {"PL", "Polski"},
    {"UK", "Українська"},
    {"RU", "Русский"},
    {"ZH", "中文（简体）"},
}};

std::optional<std::size_t> indexOf(const std::string& code) {
  const auto* found = std::ranges::find(languages, code, &Language::code);
  if (found == languages.end()) return std::nullopt;
  return static_cast<std::size_t>(found - languages.begin());
}

}  // namespace

View LanguagePicker::body() const {
  std::vector<std::string> names;
  names.reserve(languages.size());
  for (const auto& language : languages) names.emplace_back(language.name);
  const auto choose = [assign = selection.assign](const std::optional<std::size_t>& index) {
    if (index) assign(languages.at(*index).code);
  };
  return views::picker(title, std::move(names), {indexOf(selection.value), choose});
}

}  // namespace kivra
