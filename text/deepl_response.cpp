#include "text/deepl_response.h"

#include "platform/platform_error.h"
#include "support/json.h"

namespace kivra {

namespace {

[[noreturn]] void fail() {
  throw PlatformError("Не удалось прочитать ответ: он записан в неверном формате");
}

}  // namespace

std::vector<std::string> deepLTexts(std::string_view body, const char* list) {
  const auto response = json::parse(body);
  const auto* elements = response ? json::member(*response, list) : nullptr;
  if (elements == nullptr || !elements->is_array()) fail();
  std::vector<std::string> texts;
  for (const auto& element : *elements) {
    auto text = json::stringMember(element, "text");
    if (!text) fail();
    texts.push_back(std::move(*text));
  }
  return texts;
}

}  // namespace kivra
