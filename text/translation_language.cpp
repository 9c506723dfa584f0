#include "text/translation_language.h"

#include <vector>

#include "support/text.h"

namespace kivra {

namespace {

std::vector<std::string_view> partsOf(std::string_view code) {
  std::vector<std::string_view> parts;
  while (!code.empty()) {
    const auto end = std::min(code.find('-'), code.size());
    if (end > 0) parts.push_back(code.substr(0, end));
    code.remove_prefix(std::min(end + 1, code.size()));
  }
  return parts;
}

}  // namespace

std::string translationLanguage(std::string_view code) {
  const auto parts = partsOf(code);
  if (parts.empty()) return text::lowercased(code);
  if (text::uppercased(parts[0]) == "ZH") return "zh-Hans";
  if (parts.size() == 1) return text::lowercased(parts[0]);
  return text::lowercased(parts[0]) + "-" + text::uppercased(parts[1]);
}

}  // namespace kivra
