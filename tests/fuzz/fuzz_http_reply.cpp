// HTTP replies of any content: texts or the one error, never a crash.

#include <cstdint>
#include <string>

#include "platform/platform_error.h"
#include "support/text.h"
#include "text/deepl_response.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string body(reinterpret_cast<const char*>(data), size);
  for (const auto* list : {"translations", "improvements"}) {
    try {
      for (const auto& text : kivra::deepLTexts(body, list)) {
        if (!kivra::text::isValidUtf8(text)) __builtin_trap();
      }
    } catch (const kivra::PlatformError&) {
      // What does not fit is an error, and only this one.
    }
  }
  return 0;
}
