#pragma once

#include <optional>

#include "layout/exception_store.h"
#include "layout/finished_word.h"
#include "layout/questions.h"
#include "layout/word_changer.h"
#include "layout/word_reading.h"
#include "layout/word_validator.h"
#include "settings/settings_store.h"

namespace kivra {

/// The two fixes of a word that stays in its layout: two capitals at the start, and a close
/// misspelling.
class WordFixes {
 public:
  WordFixes(const SettingsStore& settings, WordValidator& validator,
            const ExceptionStore& exceptions, const Questions& questions, WordChanger& changer)
      : settings_(settings),
        validator_(validator),
        exceptions_(exceptions),
        questions_(questions),
        changer_(changer) {}

  /// True when a fix was typed. Words with anything but letters are left alone; under the extended
  /// rules marks around the word do not count.
  bool apply(const FinishedWord& word);

  /// The keys with Shift let go of at the second letter, when the word in this layout starts with
  /// two capitals and the user wants that mended.
  std::optional<Word> withoutSecondCapital(const Word& word, const Layout& layout) const;

 private:
  WordReading read(const Word& word, const Layout& layout) const;
  bool fixDoubleCapital(const FinishedWord& word);
  bool correctTypo(const FinishedWord& word, const WordReading& reading);

  const SettingsStore& settings_;
  WordValidator& validator_;
  const ExceptionStore& exceptions_;
  const Questions& questions_;
  WordChanger& changer_;
};

/// `guess` with a capital at its start where `typed` has one.
std::string matchCase(std::string_view typed, std::string_view guess);

}  // namespace kivra
