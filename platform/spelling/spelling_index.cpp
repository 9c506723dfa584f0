#include "platform/spelling/spelling_index.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/spelling/checksum.h"

namespace kivra {
namespace {

constexpr std::uint64_t indexMagic = 0x3158444E4956494BULL;  // "KIVINDX1" as bytes
constexpr std::uint32_t formatVersion = 2;

// Flags byte of a word: the dictionary's case and membership, then what the lists saw, shifted.
constexpr std::uint8_t caseMask = 0x03;
constexpr std::uint8_t inDictionaryBit = 0x04;
constexpr unsigned seenShift = 3;
// The sixth bit of "seen" does not fit beside the other flags and lies above the level.
constexpr std::uint8_t levelMask = 0x3F;
constexpr std::uint8_t levelShadowed = 0x40;

struct Header {
  std::uint64_t magic = indexMagic;
  std::uint64_t identity = 0;
  std::uint64_t checksum = 0;
  std::uint32_t version = formatVersion;
  std::uint32_t edgeCount = 0;
  std::uint32_t wordCount = 0;
  std::uint32_t root = 0;
  std::uint32_t hasFrequencies = 0;
  std::uint32_t reserved = 0;
};
static_assert(sizeof(Header) == 48);

// Forms as they come: one arena of bytes and one number each, since a million strings of their own
// would cost four times the memory.
class FormPile {
 public:
  void add(std::string_view word, std::uint8_t mark) {
    if (word.empty() || word.size() > 0xFF) return;
    entries_.push_back(bytes_.size());
    bytes_.push_back(static_cast<char>(mark));
    bytes_.push_back(static_cast<char>(word.size()));
    bytes_.append(word);
  }

  void sort() {
    std::sort(entries_.begin(), entries_.end(),
              [this](std::size_t a, std::size_t b) { return wordAt(a) < wordAt(b); });
  }

  [[nodiscard]] std::size_t size() const { return entries_.size(); }
  [[nodiscard]] std::string_view word(std::size_t i) const { return wordAt(entries_[i]); }
  [[nodiscard]] std::uint8_t mark(std::size_t i) const {
    return static_cast<std::uint8_t>(bytes_[entries_[i]]);
  }

 private:
  [[nodiscard]] std::string_view wordAt(std::size_t offset) const {
    const auto length = static_cast<unsigned char>(bytes_[offset + 1]);
    return std::string_view(bytes_).substr(offset + 2, length);
  }

  std::string bytes_;
  std::vector<std::size_t> entries_;
};

constexpr std::uint8_t forbiddenMark = 0x08;
constexpr std::uint8_t listedMark = 0x10;

void pileForms(const SpellingIndex::FormSource& forms, FormPile& pile) {
  forms([&pile](std::u32string_view form, bool allowed) {
    const auto code = encodeWord(form);
    if (!code) return;
    const auto mark = static_cast<std::uint8_t>(letterCaseOf(form));
    pile.add(*code, allowed ? mark : forbiddenMark);
    // Most people write е for ё, and some dictionaries have only one of the two spellings.
    if (code->find(yoCode) != std::string::npos) {
      pile.add(foldYo(*code), allowed ? mark : forbiddenMark);
    }
  });
}

template <typename T>
void append(std::string& out, const T* data, std::size_t count) {
  out.append(reinterpret_cast<const char*>(data), count * sizeof(T));
}

struct WordBytes {
  std::vector<std::uint8_t> levels;
  std::vector<std::uint8_t> flags;

  void add(std::uint8_t dictionaryFlags, const WordFrequency& frequency) {
    const bool shadowed = (frequency.seen & seenShadowed) != 0;
    const auto seen = static_cast<unsigned>(frequency.seen & ~seenShadowed & 0x1F);
    levels.push_back(static_cast<std::uint8_t>(frequency.level | (shadowed ? levelShadowed : 0)));
    flags.push_back(static_cast<std::uint8_t>(dictionaryFlags | (seen << seenShift)));
  }
};

// One word out of a run of equal entries of the pile.
void addWord(const FormPile& pile, std::size_t begin, std::size_t end,
             const WordFrequencies& frequencies, WordAutomatonBuilder& automaton, WordBytes& bytes,
             LetterHabitsBuilder& habits) {
  std::uint8_t plainest = 0xFF;
  bool forbidden = false;
  bool listed = false;
  for (std::size_t i = begin; i < end; ++i) {
    const std::uint8_t mark = pile.mark(i);
    if (mark == forbiddenMark) forbidden = true;
    if (mark == listedMark) listed = true;
    if (mark <= caseMask) plainest = std::min(plainest, mark);
  }
  const std::string word(pile.word(begin));
  // Few words are looked for: the lists have a fifth of the forms.
  auto found = listed ? frequencies.find(word) : frequencies.end();
  if (!listed && word.find(yoCode) != std::string::npos) found = frequencies.find(foldYo(word));
  const WordFrequency frequency = found == frequencies.end() ? WordFrequency{} : found->second;
  const bool inDictionary = plainest != 0xFF && !forbidden;
  if (!inDictionary && (forbidden || frequency.level == 0)) return;
  automaton.add(word);
  if (inDictionary) habits.add(word);
  bytes.add(inDictionary ? static_cast<std::uint8_t>(plainest | inDictionaryBit) : 0, frequency);
}

}  // namespace

struct SpellingIndex::Mapping {
  Mapping(void* startOfMap, std::size_t sizeOfMap) : start(startOfMap), size(sizeOfMap) {}
  ~Mapping() { munmap(start, size); }
  Mapping(const Mapping&) = delete;
  Mapping& operator=(const Mapping&) = delete;

  void* start;
  std::size_t size;
};

SpellingIndex::SpellingIndex() = default;
SpellingIndex::~SpellingIndex() = default;

std::string SpellingIndex::build(const FormSource& forms, const WordFrequencies& frequencies,
                                 std::uint64_t identity) {
  FormPile pile;
  pileForms(forms, pile);
  for (const auto& [word, frequency] : frequencies) pile.add(word, listedMark);
  pile.sort();

  WordAutomatonBuilder automaton;
  WordBytes bytes;
  LetterHabitsBuilder habits;
  for (std::size_t begin = 0; begin < pile.size();) {
    std::size_t end = begin + 1;
    while (end < pile.size() && pile.word(end) == pile.word(begin)) ++end;
    addWord(pile, begin, end, frequencies, automaton, bytes, habits);
    begin = end;
  }

  Header header;
  header.identity = identity;
  header.root = automaton.finish();
  header.edgeCount = static_cast<std::uint32_t>(automaton.edges().size());
  header.wordCount = automaton.wordCount();
  header.hasFrequencies = frequencies.empty() ? 0 : 1;
  std::string block;
  block.reserve(sizeof(Header) + automaton.edges().size() * sizeof(AutomatonEdge) +
                bytes.levels.size() * 2 + LetterHabits::tableSize);
  append(block, &header, 1);
  append(block, automaton.edges().data(), automaton.edges().size());
  append(block, bytes.levels.data(), bytes.levels.size());
  append(block, bytes.flags.data(), bytes.flags.size());
  block += habits.finish();
  header.checksum = checksumOf(std::string_view(block).substr(sizeof(Header)));
  std::memcpy(block.data(), &header, sizeof(Header));
  return block;
}

bool SpellingIndex::attach(std::span<const char> block, std::uint64_t identity) {
  Header header;
  if (block.size() < sizeof(Header)) return false;
  std::memcpy(&header, block.data(), sizeof(Header));
  if (header.magic != indexMagic || header.version != formatVersion ||
      header.identity != identity) {
    return false;
  }
  const std::size_t edgeBytes = std::size_t{header.edgeCount} * sizeof(AutomatonEdge);
  const std::size_t wordBytes = std::size_t{header.wordCount} * 2;
  if (block.size() != sizeof(Header) + edgeBytes + wordBytes + LetterHabits::tableSize)
    return false;
  const std::span<const char> body = block.subspan(sizeof(Header));
  if (checksumOf({body.data(), body.size()}) != header.checksum || header.edgeCount == 0)
    return false;
  const std::span edges(reinterpret_cast<const AutomatonEdge*>(body.data()), header.edgeCount);
  if (!WordAutomaton::isSound(edges, header.root, header.wordCount)) return false;
  automaton_ = WordAutomaton(edges, header.root);
  const auto* words = reinterpret_cast<const std::uint8_t*>(body.data() + edgeBytes);
  levels_ = {words, header.wordCount};
  flags_ = {words + header.wordCount, header.wordCount};
  habits_ = LetterHabits({words + wordBytes, LetterHabits::tableSize});
  hasFrequencies_ = header.hasFrequencies != 0;
  return true;
}

std::unique_ptr<SpellingIndex> SpellingIndex::fromBlock(std::string block, std::uint64_t identity) {
  std::unique_ptr<SpellingIndex> index(new SpellingIndex);
  index->owned_ = std::move(block);
  if (!index->attach(index->owned_, identity)) return nullptr;
  return index;
}

std::unique_ptr<SpellingIndex> SpellingIndex::fromFile(const std::filesystem::path& file,
                                                       std::uint64_t identity) {
  const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return nullptr;
  struct stat status {};
  void* start = MAP_FAILED;
  std::size_t size = 0;
  if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0) {
    size = static_cast<std::size_t>(status.st_size);
    start = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
  }
  close(descriptor);
  if (start == MAP_FAILED) return nullptr;
  std::unique_ptr<SpellingIndex> index(new SpellingIndex);
  index->mapping_ = std::make_unique<Mapping>(start, size);
  if (!index->attach({static_cast<const char*>(start), size}, identity)) return nullptr;
  // The check has read the whole file; words need few of its pages, which stay in the file's cache.
  madvise(start, size, MADV_DONTNEED);
  return index;
}

std::optional<IndexedWord> SpellingIndex::find(std::string_view word) const {
  const auto number = automaton_.find(word);
  if (!number) return std::nullopt;
  return this->word(*number);
}

IndexedWord SpellingIndex::word(std::uint32_t number) const {
  const std::uint8_t level = levels_[number];
  const std::uint8_t flags = flags_[number];
  IndexedWord word;
  word.inDictionary = (flags & inDictionaryBit) != 0;
  word.dictionaryCase = static_cast<LetterCase>(flags & caseMask);
  word.frequency.level = level & levelMask;
  word.frequency.seen = static_cast<std::uint8_t>(flags >> seenShift);
  if ((level & levelShadowed) != 0) word.frequency.seen |= seenShadowed;
  return word;
}

}  // namespace kivra
