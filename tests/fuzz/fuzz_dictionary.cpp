// A dictionary's rules and stems, a frequency list and a cached index, out of the same bytes.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/spelling/affix_expander.h"
#include "platform/spelling/spelling_index.h"
#include "platform/spelling/word_frequencies.h"
#include "platform/spelling/word_splitter.h"

namespace {
struct Enough {};
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::size_t half = bytes.find('\f');
  const std::string_view aff = bytes.substr(0, half);
  const std::string_view rest = half == std::string_view::npos ? "" : bytes.substr(half + 1);
  const auto list = kivra::readFrequencies(rest);
  std::size_t forms = 0;
  const auto source = [&](const auto& form) {
    // Rules and stems can multiply; what matters here is that none of them is misread.
    try {
      kivra::AffixExpander(aff).expand(rest, [&](std::u32string_view word, bool allowed) {
        if (++forms > 10000) throw Enough();
        form(word, allowed);
      });
    } catch (const Enough&) {
    }
  };
  const auto index =
      kivra::SpellingIndex::fromBlock(kivra::SpellingIndex::build(source, list, 1), 1);
  if (!index) __builtin_trap();
  kivra::SpellingIndex::fromBlock(std::string(bytes), 1);
  kivra::findWords(kivra::decodeUtf8(bytes));
  return 0;
}
