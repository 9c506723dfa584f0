#include "platform/spelling/correction_odds.h"

#include <algorithm>

namespace kivra {
namespace {

// A logistic regression on the fitting halves of the lists and texts named in NOTICE.md, shifted so
// that running text is changed as seldom as intended.
struct Weights {
  double base;
  double lead;         ///< a point of lead over the next candidate, up to mostLead
  double nearLead;     ///< the same, up to mostNearLead, where it counts most
  double commonness;   ///< of the candidate
  double cost;         ///< of the slip
  double costShare;    ///< of the slip, for each letter of the word
  double sameEnd;      ///< both words end with the same letter
  double letter;       ///< up to mostLetters: a long word has few words near it by chance
  double strangeness;  ///< of a letter behind the two before it, on the average
  double listed;       ///< a point of frequency of the typed string itself
  double capitalised;  ///< names that no dictionary has
  double upper;        ///< abbreviations
  double name;         ///< a name is seldom meant by a word in lower case
  double otherForm;    ///< another form of the candidate
  double derived;      ///< a dictionary word with a prefix or suffix
  double dearDerived;  ///< the same, when the word is long and the slip a dear one
  double compound;     ///< two dictionary words
  double family;       ///< a dear slip in a word of which the lists know several forms
  double frontLetter;  ///< the candidate behind one letter more: programs ("xmessage")
};

constexpr Weights russian = {-4.32,  0.022, 0.343,  0.064,  -0.098, -0.247, 0.475,
                             0.565,  0.104, -0.067, -4.383, -3.779, -2.776, -0.408,
                             -1.082, -1.5,  0,      -4.5,   0};
constexpr Weights english = {-5.132, 0.035, 0.286,  0.169,  -0.037, -0.820, 0.933,
                             0.467,  0.044, -0.089, -2.230, -1.854, -0.653, -1.142,
                             -1.288, -1.5,  -1.364, -3.554, -1.807};

constexpr int mostLead = 40;
constexpr int mostNearLead = 8;
constexpr std::size_t mostLetters = 7;

// From this cost on a slip is one of the hand: slips of the ear have families too ("искуственный").
constexpr int dearSlip = 15;
constexpr std::size_t fewestOfFamily = 3;
// The parts of shorter ones may be there by chance ("срозу").
constexpr std::size_t longDerived = 9;

bool isRussian(std::string_view word) {
  return std::ranges::any_of(word, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

double ofCase(const Weights& weights, LetterCase typed, LetterCase meant) {
  if (typed == LetterCase::capitalised) return weights.capitalised;
  if (typed == LetterCase::upper) return weights.upper;
  return meant == LetterCase::lower ? 0 : weights.name;
}

}  // namespace

double CorrectionOdds::of(const CorrectionEvidence& evidence) const {
  const std::string_view typed = evidence.typed;
  const Weights& weights = isRussian(typed) ? russian : english;
  const auto letters = static_cast<double>(typed.size());
  const auto known = index_.find(typed);
  double odds = weights.base + ofCase(weights, evidence.typedCase, evidence.meantCase);
  odds += weights.lead * std::min(evidence.lead, mostLead);
  odds += weights.nearLead * std::min(evidence.lead, mostNearLead);
  odds += weights.commonness * evidence.commonness + weights.cost * evidence.cost;
  odds += weights.costShare * evidence.cost / letters;
  if (typed.back() == evidence.meant.back()) odds += weights.sameEnd;
  odds += weights.letter * static_cast<double>(std::min(typed.size(), mostLetters));
  odds += weights.strangeness * index_.habits().cost(typed) / letters;
  if (known) odds += weights.listed * known->frequency.level;
  if (WordFormation::isOtherForm(typed, evidence.meant)) odds += weights.otherForm;
  const bool isDear = evidence.cost >= dearSlip;
  if (formation_.isDerived(typed)) {
    odds += weights.derived;
    if (isDear && typed.size() >= longDerived) odds += weights.dearDerived;
  }
  if (formation_.isCompound(typed)) odds += weights.compound;
  if (isDear && formation_.listedForms(typed) >= fewestOfFamily) odds += weights.family;
  if (typed.substr(1) == evidence.meant) odds += weights.frontLetter;
  return odds;
}

bool CorrectionOdds::isLeftAlone(std::string_view typed) const {
  return formation_.isStemOfNegation(typed) || formation_.isVariant(typed);
}

}  // namespace kivra
