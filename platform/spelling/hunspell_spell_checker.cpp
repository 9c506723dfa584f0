#include "platform/spelling/hunspell_spell_checker.h"

#include <malloc.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <fstream>
#include <hunspell.hxx>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "platform/spelling/affix_expander.h"
#include "platform/spelling/checksum.h"
#include "platform/spelling/letter_code.h"
#include "platform/spelling/word_splitter.h"

namespace kivra {
namespace {

namespace fs = std::filesystem;

struct Cancelled : std::runtime_error {
  Cancelled() : std::runtime_error("loading was broken off") {}
};

fs::path environmentPath(const char* name) {
  // Relative paths in these variables are to be ignored.
  const char* value = std::getenv(name);
  fs::path path = value != nullptr ? value : "";
  return path.is_absolute() ? path : fs::path();
}

fs::path userDirectory(const char* variable, const char* belowHome) {
  fs::path path = environmentPath(variable);
  if (!path.empty()) return path;
  const fs::path home = environmentPath("HOME");
  return home.empty() ? fs::path() : home / belowHome;
}

// A whole file appears under its name or none does, whatever happens in between.
bool writeAtomically(const fs::path& file, std::string_view bytes) {
  std::error_code error;
  fs::create_directories(file.parent_path(), error);
  const fs::path draft = file.string() + "." + std::to_string(getpid()) + ".new";
  std::ofstream out(draft, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (out) fs::rename(draft, file, error);
  const bool good = out && !error;
  if (!good) fs::remove(draft, error);
  return good;
}

fs::path firstExisting(const std::vector<fs::path>& directories, const std::string& name) {
  std::error_code error;
  for (const auto& directory : directories) {
    if (fs::is_regular_file(directory / name, error)) return directory / name;
  }
  return {};
}

}  // namespace

HunspellSpellChecker::Options HunspellSpellChecker::systemOptions() {
  Options options;
  const fs::path data = userDirectory("XDG_DATA_HOME", ".local/share");
  if (!data.empty()) options.dictionaryDirectories.push_back(data / "hunspell");
  options.dictionaryDirectories.emplace_back("/usr/share/hunspell");
  options.dictionaryDirectories.emplace_back("/usr/share/myspell/dicts");
  // The program may run from an install prefix (bin/) or from a folder of the build tree.
  std::error_code error;
  fs::path at = fs::read_symlink("/proc/self/exe", error).parent_path();
  for (int up = 0; up < 4 && !error && at.has_relative_path(); ++up, at = at.parent_path()) {
    options.dataDirectories.push_back(at / "share/kivra");
  }
  options.dataDirectories.emplace_back("/usr/local/share/kivra");
  options.dataDirectories.emplace_back("/usr/share/kivra");
  const fs::path cache = userDirectory("XDG_CACHE_HOME", ".cache");
  if (!cache.empty()) options.cacheDirectory = cache / "kivra";
  return options;
}

HunspellSpellChecker::HunspellSpellChecker(Options options) : options_(std::move(options)) {}

HunspellSpellChecker::~HunspellSpellChecker() {
  cancelled_ = true;
  if (loader_.joinable()) loader_.join();
}

void HunspellSpellChecker::load() {
  if (started_) return;
  started_ = true;
  loader_ = std::thread([this] { loadAll(); });
}

void HunspellSpellChecker::waitUntilLoaded() {
  load();
  if (loader_.joinable()) loader_.join();
}

void HunspellSpellChecker::loadAll() {
  // All indexes come first: building one leaves tens of megabytes of holes, and hunspell's small
  // pieces would settle among them and keep them from being given back.
  std::vector<Prepared> prepared;
  for (const std::string& code : options_.languages) {
    if (auto language = prepare(code)) prepared.push_back(*std::move(language));
  }
  malloc_trim(0);
  for (Prepared& language : prepared) {
    if (cancelled_) return;
    try {
      auto loaded = withHunspell(std::move(language));
      const std::lock_guard lock(mutex_);
      languages_.push_back(std::move(loaded));
    } catch (const std::exception&) {
      // Out of memory: the language is not offered.
    }
  }
}

std::unique_ptr<SpellingLanguage> HunspellSpellChecker::withHunspell(Prepared language) const {
  const DictionaryFiles& files = language.files;
  auto hunspell = std::make_unique<Hunspell>(files.aff.c_str(), files.dic.c_str());
  return std::make_unique<SpellingLanguage>(files.name, std::move(hunspell), language.encoding,
                                            std::move(language.index), options_.demandedOdds);
}

std::optional<HunspellSpellChecker::Prepared> HunspellSpellChecker::prepare(
    const std::string& code) const {
  auto found = findDictionaries(options_.dictionaryDirectories, code);
  for (DictionaryFiles& files : found) {
    try {
      const auto text = readDictionary(files);
      if (!text) continue;
      if (auto index = loadIndex(files, code, *text)) {
        return Prepared{std::move(files), text->encoding, std::move(index)};
      }
    } catch (const Cancelled&) {
      return std::nullopt;
    } catch (const std::exception&) {
      // Out of memory or a length out of bounds: a dictionary that lies about its size.
    }
  }
  return std::nullopt;
}

std::unique_ptr<SpellingIndex> HunspellSpellChecker::loadIndex(const DictionaryFiles& files,
                                                               const std::string& code,
                                                               const DictionaryText& text) const {
  const auto list = readWholeFile(firstExisting(options_.dataDirectories, code + ".freq"));
  const std::uint64_t identity =
      checksumOf(list.value_or(""), checksumOf(text.dic, checksumOf(text.aff)));
  const std::string name = files.name + ".index";
  if (auto index = SpellingIndex::fromFile(firstExisting(options_.dataDirectories, name), identity))
    return index;
  const fs::path cache =
      options_.cacheDirectory.empty() ? fs::path() : options_.cacheDirectory / name;
  if (!cache.empty()) {
    if (auto index = SpellingIndex::fromFile(cache, identity)) return index;
  }
  const WordFrequencies frequencies = readFrequencies(list.value_or(""));
  const AffixExpander expander(text.aff);
  std::string block = SpellingIndex::build(
      [&](const std::function<void(std::u32string_view, bool)>& form) {
        expander.expand(text.dic, [&](std::u32string_view word, bool allowed) {
          if (cancelled_) throw Cancelled();
          form(word, allowed);
        });
      },
      frequencies, identity);
  if (!cache.empty() && writeAtomically(cache, block)) {
    // Pages of a mapped file need no memory of their own.
    if (auto index = SpellingIndex::fromFile(cache, identity)) return index;
  }
  return SpellingIndex::fromBlock(std::move(block), identity);
}

std::vector<std::string> HunspellSpellChecker::availableLanguages() {
  load();
  const std::lock_guard lock(mutex_);
  std::vector<std::string> names;
  for (const auto& language : languages_) names.push_back(language->name());
  return names;
}

int HunspellSpellChecker::uniqueSpellDocumentTag() { return ++lastTag_; }

const SpellingLanguage* HunspellSpellChecker::find(std::string_view language) {
  const std::lock_guard lock(mutex_);
  for (const auto& loaded : languages_) {
    if (loaded->name() == language) return loaded.get();
  }
  return nullptr;
}

std::optional<TextRange> HunspellSpellChecker::checkSpellingOfString(std::string_view string,
                                                                     std::size_t startingAt,
                                                                     std::string_view language,
                                                                     int /*tag*/) {
  const SpellingLanguage* speller = find(language);
  if (speller == nullptr) return std::nullopt;
  const std::u32string text = decodeUtf8(string);
  for (const FoundWord& word : findWords(text)) {
    if (word.location >= startingAt && !speller->isValid(word.text)) {
      return TextRange{word.location, word.length};
    }
  }
  return std::nullopt;
}

std::optional<std::string> HunspellSpellChecker::correctionForWordRange(TextRange range,
                                                                        std::string_view string,
                                                                        std::string_view language,
                                                                        int /*tag*/) {
  const SpellingLanguage* speller = find(language);
  if (speller == nullptr) return std::nullopt;
  const std::u32string text = decodeUtf8(string);
  for (const FoundWord& word : findWords(text)) {
    if (word.location == range.location && word.length == range.length) {
      return speller->correct(word.text);
    }
  }
  return std::nullopt;
}

}  // namespace kivra
