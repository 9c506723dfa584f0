#pragma once

#include <cstddef>
#include <functional>
#include <iterator>
#include <string_view>
#include <utility>

namespace kivra {

/// What the decision at the end of a word asks, in the order in which it may come up.
enum class Question {
  secret,        ///< is it a password or an identifier
  dictionary,    ///< does the user's dictionary replace it
  automatic,     ///< are words mended at all
  learned,       ///< has the user taken back a change of it
  nameHere,      ///< is it a short name or a letter within a sentence
  letterHere,    ///< is the one letter a word where it stands
  letterThere,   ///< is the other layout's letter one
  lettersThere,  ///< does the other layout give nothing but letters
  wordHere,      ///< is it a word of the layout's language
  wordThere,     ///< is the other layout's reading a word of its language
  letters,       ///< are there nothing but letters
  twoCapitals,   ///< does it start with two capitals
  longEnough,    ///< is it long enough for its spelling to be mended
  guess,         ///< does the spell checker have another word for it
  close,         ///< does the guess differ in so few letters
};

inline constexpr const char* questionNames[] = {
    "secret",     "dictionary",  "automatic",    "learned",  "nameHere",
    "letterHere", "letterThere", "lettersThere", "wordHere", "wordThere",
    "letters",    "twoCapitals", "longEnough",   "guess",    "close"};
static_assert(std::size(questionNames) == static_cast<std::size_t>(Question::close) + 1);

constexpr const char* name(Question question) {
  return questionNames[static_cast<std::size_t>(question)];
}

/// A question with its answer; valid during the call that tells of it.
struct Answer {
  Question question;
  bool isYes = false;
  std::string_view about;    ///< the reading or the guess that was asked about; may be empty
  std::size_t distance = 0;  ///< of a guess, in letters
};

/// Tells an observer, when there is one, what the decision asks and what the answers are.
class Questions {
 public:
  using Observer = std::function<void(const Answer&)>;

  /// Null: nobody is told.
  void setObserver(Observer observer) { observer_ = std::move(observer); }

  /// Gives the answer back.
  bool ask(Question question, bool isYes, std::string_view about = {},
           std::size_t distance = 0) const {
    if (observer_) observer_({question, isYes, about, distance});
    return isYes;
  }

 private:
  Observer observer_;
};

}  // namespace kivra
