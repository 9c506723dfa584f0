#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/spell_checker.h"
#include "platform/spelling/dictionary_files.h"
#include "platform/spelling/spelling_language.h"

namespace kivra {

/// The spell checker on Linux: validity by hunspell with the installed dictionaries, corrections by
/// an index of all their word forms and their frequencies. At most one dictionary is loaded for
/// each language asked for, on a thread of its own; one that is missing or damaged is not offered.
class HunspellSpellChecker : public SpellChecker {
 public:
  struct Options {
    /// Language codes for which a dictionary is looked for.
    std::vector<std::string> languages = {"ru", "en"};
    /// Where dictionaries lie; earlier directories win.
    std::vector<std::filesystem::path> dictionaryDirectories;
    /// Where the frequency files ("ru.freq") lie; the first directory that has one wins. Without
    /// one there are fewer and poorer corrections, and short dictionary forms are all valid. An
    /// index ("ru_RU.index") that lies there and fits the dictionary spares building one.
    std::vector<std::filesystem::path> dataDirectories;
    /// Where the index of each dictionary is kept, to start at once the next time; empty: nowhere.
    std::filesystem::path cacheDirectory;
    /// From which odds on a word is corrected (see CorrectionOdds); for measuring other points than
    /// the one that Kivra works at.
    double demandedOdds = 0;
  };

  /// The directories of this system and user (XDG), and those beside the running program.
  static Options systemOptions();

  /// Loads nothing yet.
  explicit HunspellSpellChecker(Options options = systemOptions());
  /// Breaks off loading that is under way.
  ~HunspellSpellChecker() override;

  /// Starts loading in the background; the second call does nothing. `availableLanguages` does this
  /// by itself when nobody has.
  void load();

  /// Loads, and returns when every language that can be had is offered.
  void waitUntilLoaded();

  std::vector<std::string> availableLanguages() override;
  int uniqueSpellDocumentTag() override;
  std::optional<TextRange> checkSpellingOfString(std::string_view string, std::size_t startingAt,
                                                 std::string_view language, int tag) override;
  std::optional<std::string> correctionForWordRange(TextRange range, std::string_view string,
                                                    std::string_view language, int tag) override;

 private:
  /// A checked dictionary with its index, for hunspell to read.
  struct Prepared {
    DictionaryFiles files;
    std::string encoding;
    std::unique_ptr<SpellingIndex> index;
  };

  void loadAll();
  std::optional<Prepared> prepare(const std::string& code) const;
  std::unique_ptr<SpellingLanguage> withHunspell(Prepared language) const;
  std::unique_ptr<SpellingIndex> loadIndex(const DictionaryFiles& files, const std::string& code,
                                           const DictionaryText& text) const;
  const SpellingLanguage* find(std::string_view language);

  Options options_;
  std::mutex mutex_;  // guards languages_; a language itself is the main thread's once it is in
  std::vector<std::unique_ptr<SpellingLanguage>> languages_;
  std::thread loader_;
  bool started_ = false;
  std::atomic<bool> cancelled_{false};
  int lastTag_ = 0;
};

}  // namespace kivra
