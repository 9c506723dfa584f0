#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "layout/exception_store.h"
#include "layout/finished_word.h"
#include "layout/history_entry.h"
#include "layout/key_output.h"
#include "layout/keycode_map.h"
#include "layout/questions.h"
#include "layout/replacement_application.h"
#include "layout/replacement_store.h"
#include "layout/undo_stack.h"
#include "layout/word_changer.h"
#include "layout/word_fixes.h"
#include "layout/word_validator.h"
#include "platform/workspace.h"
#include "settings/settings_store.h"

namespace kivra {

/// Collects keystrokes into words and decides at the end of each what is to be mended: an entry of
/// the user's dictionary, the wrong layout, two capitals, a close misspelling, in this order. Knows
/// a word only as the keys that typed it; everything it changes it types.
class LayoutSwitcher {
 public:
  /// What the switcher works with; all of it outlives the switcher.
  struct Environment {
    const KeycodeMap& map;
    WordValidator& validator;
    const SettingsStore& settings;
    const ReplacementStore& replacements;
    const ExceptionStore& exceptions;
    UndoStack& undoStack;
    KeyOutput& output;
    Workspace& workspace;
  };

  explicit LayoutSwitcher(const Environment& environment);

  /// True, under the extended rules only: the key is a mark that ended the word, and was typed
  /// after a correction; the user's own must be dropped.
  bool keyTyped(std::uint16_t keyCode, std::uint64_t flags);

  /// Ends the word with the trigger key, or breaks it off without one. True: the trigger was typed
  /// after a correction, and the user's own must be dropped.
  bool wordBoundary(std::optional<std::uint16_t> trigger);

  /// Retypes the current word, or else the last one with its trigger, in the other layout.
  void manualSwitch();

  /// Whether the frontmost application is one in which nothing is corrected.
  bool isSkippedApp() const;

  /// Has what each decision from now on asks told to the observer.
  void setObserver(Questions::Observer observer) { questions_.setObserver(std::move(observer)); }

 private:
  bool endWord(std::optional<Keystroke> trigger);
  bool processWord(const Word& word, Keystroke trigger);
  bool decide(const FinishedWord& word);
  /// Whether the word before stands on the same line, in the same layout and without a mark.
  bool isAmongWords(const FinishedWord& word) const;
  bool switchShortWord(const FinishedWord& word, const std::string& converted);
  bool switchLongWord(const FinishedWord& word, const std::string& converted);
  bool switchPunctuatedWord(const FinishedWord& word);
  bool isException(const FinishedWord& word) const;
  void switchLayout(const FinishedWord& word, const Word& retyped);
  void remember(const HistoryEntry& entry);

  const KeycodeMap& map_;
  WordValidator& validator_;
  const SettingsStore& settings_;
  const ReplacementStore& replacements_;
  const ExceptionStore& exceptions_;
  KeyOutput& output_;
  Workspace& workspace_;
  Questions questions_;
  std::shared_ptr<WordChanger> changer_;  // recorded undos hold it weakly
  ReplacementApplication replacementApplication_;
  WordFixes fixes_;

  Word word_;
  Word lastWord_;
  std::optional<Keystroke> lastTrigger_;
  std::vector<HistoryEntry> history_;
  bool suppressAutoForCurrentWord_ = false;
};

}  // namespace kivra
