#include "platform/qt/shown_text.h"

#include <algorithm>

namespace kivra::qt {

namespace {

/// Longer lines fit no window.
constexpr int longestShown = 500;

constexpr char16_t controlPictures = 0x2400;
constexpr char16_t deletePicture = 0x2421;
constexpr char16_t replacementCharacter = 0xFFFD;

bool isLineBreak(QChar character) {
  constexpr QStringView lineBreaks = u"\n\v\f\r\u0085\u2028\u2029";
  return lineBreaks.contains(character);
}

/// Embeddings and overrides of the direction of writing, which would turn what stands beside them.
bool turnsText(QChar character) {
  const auto code = character.unicode();
  return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

QChar visible(QChar character) {
  constexpr char16_t space = 0x20;
  constexpr char16_t del = 0x7F;
  const auto code = character.unicode();
  if (code < space) return QChar(static_cast<char16_t>(controlPictures + code));
  if (code == del) return QChar(deletePicture);
  const auto isControl = character.category() == QChar::Other_Control;
  return isControl || turnsText(character) ? QChar(replacementCharacter) : character;
}

}  // namespace

QString shownLine(const std::string& text) {
  auto line = QString::fromStdString(text).left(longestShown).simplified();
  std::ranges::transform(line, line.begin(), visible);
  return line;
}

QString toolTipText(const std::string& text) {
  return "<span>" + shownLine(text).toHtmlEscaped() + "</span>";
}

QString withoutLineBreaks(const QString& text) {
  const auto begin = std::find_if_not(text.begin(), text.end(), isLineBreak);
  const auto end = std::find_if_not(text.rbegin(), std::make_reverse_iterator(begin), isLineBreak);
  QString line;
  for (auto at = begin; at != end.base(); ++at) {
    const auto isSecondOfPair = *at == u'\n' && line.size() > 0 && *(at - 1) == u'\r';
    if (!isSecondOfPair) line += isLineBreak(*at) ? QChar(u' ') : *at;
  }
  return line;
}

}  // namespace kivra::qt
