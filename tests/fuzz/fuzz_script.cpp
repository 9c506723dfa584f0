// Scripts of any content: an error line or an ordinary run, never a crash.

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "script.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Fixed dictionaries: loading the real ones would take all the time.
  std::istringstream input(
      R"({"op":"dictionary","language":"ru","words":["привет"]})"
      "\n"
      R"({"op":"dictionary","language":"en","words":["hello"],"corrections":{"helo":"hello"}})"
      "\n" +
      std::string(reinterpret_cast<const char*>(data), size));
  std::ostringstream output;
  const auto status = kivra::desk::playScript(input, output);
  if (status != 0 && status != 2) std::abort();
  return 0;
}
