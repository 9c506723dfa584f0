#include "web_words.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "platform/spelling/letter_code.h"

namespace kivra {
namespace {

// Reads numbers out of a file in memory; past the end everything is 0 and `good` is false.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

  template <typename T>
  T next() {
    T value{};
    if (at_ + sizeof(T) > bytes_.size()) {
      good_ = false;
      return value;
    }
    std::memcpy(&value, bytes_.data() + at_, sizeof(T));
    at_ += sizeof(T);
    return value;
  }

  [[nodiscard]] bool good() const { return good_; }

 private:
  std::string_view bytes_;
  std::size_t at_ = 0;
  bool good_ = true;
};

// The parts of a .traineddata file lie behind a table of their offsets, -1 for a missing part.
std::string_view partOf(std::string_view data, std::size_t wanted) {
  Bytes bytes(data);
  const auto count = static_cast<std::size_t>(bytes.next<std::int32_t>());
  std::vector<std::int64_t> offsets;
  for (std::size_t i = 0; i < std::min<std::size_t>(count, 64); ++i) {
    offsets.push_back(bytes.next<std::int64_t>());
  }
  if (!bytes.good() || wanted >= offsets.size() || offsets[wanted] < 0) return {};
  auto end = static_cast<std::int64_t>(data.size());
  for (const std::int64_t offset : offsets) {
    if (offset > offsets[wanted]) end = std::min(end, offset);
  }
  if (end < offsets[wanted]) return {};
  return data.substr(static_cast<std::size_t>(offsets[wanted]),
                     static_cast<std::size_t>(end - offsets[wanted]));
}

constexpr std::size_t wordListPart = 19;
constexpr std::size_t characterSetPart = 21;

std::vector<std::u32string> readCharacters(std::string_view part) {
  std::vector<std::u32string> out;
  std::size_t pos = part.find('\n');
  while (pos != std::string_view::npos && pos + 1 < part.size()) {
    const std::string_view line = part.substr(pos + 1);
    out.push_back(decodeUtf8(line.substr(0, line.find_first_of(" \n"))));
    pos = part.find('\n', pos + 1);
  }
  return out;
}

// The word list is a graph of 64-bit edges: from the lowest bit the character's number, then three
// flags (last edge of its node, backward edge, word ends here), then the node it leads to.
class WordGraph {
 public:
  WordGraph(std::string_view part, std::vector<std::u32string> characters)
      : characters_(std::move(characters)) {
    Bytes bytes(part);
    const auto magic = bytes.next<std::int16_t>();
    const auto setSize = bytes.next<std::int32_t>();
    const auto edgeCount = bytes.next<std::int32_t>();
    if (magic != 42 || setSize <= 0 || edgeCount <= 0) return;
    while ((1U << letterBits_) < static_cast<std::uint32_t>(setSize) + 1) ++letterBits_;
    for (std::int32_t i = 0; i < edgeCount && bytes.good(); ++i) {
      edges_.push_back(bytes.next<std::uint64_t>());
    }
    if (!bytes.good()) edges_.clear();
  }

  template <typename Word>
  void forEachWord(Word&& word) const {
    std::u32string path;
    if (!edges_.empty()) walk(0, path, word);
  }

 private:
  template <typename Word>
  void walk(std::uint64_t node, std::u32string& path, Word& word) const {
    for (std::uint64_t at = node; at < edges_.size(); ++at) {
      const std::uint64_t edge = edges_[at];
      const auto letter = static_cast<std::size_t>(edge & ((1ULL << letterBits_) - 1));
      const auto flags = static_cast<unsigned>((edge >> letterBits_) & 7U);
      const std::uint64_t next = edge >> (letterBits_ + 3);
      if (letter < characters_.size() && (flags & 2U) == 0 && path.size() < 64) {
        const std::size_t length = path.size();
        path += characters_[letter];
        if ((flags & 4U) != 0) word(path);
        if (next != 0 && next < edges_.size()) walk(next, path, word);
        path.resize(length);
      }
      if ((flags & 1U) != 0) return;
    }
  }

  std::vector<std::u32string> characters_;
  std::vector<std::uint64_t> edges_;
  unsigned letterBits_ = 0;
};

}  // namespace

void forEachWebWord(std::string_view data, const std::function<void(const std::u32string&)>& word) {
  WordGraph(partOf(data, wordListPart), readCharacters(partOf(data, characterSetPart)))
      .forEachWord(word);
}

}  // namespace kivra
