#include "platform/embedded/text_field.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace kivra::embedded {

namespace {

std::u16string utf16(std::string_view text) {
  const auto converted =
      icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
  return {converted.getBuffer(), static_cast<std::size_t>(converted.length())};
}

icu::UnicodeString readOnlyAlias(std::u16string_view text) {
  return {false, text.data(), static_cast<std::int32_t>(text.size())};
}

std::string utf8(std::u16string_view text) {
  std::string converted;
  readOnlyAlias(text).toUTF8String(converted);
  return converted;
}

icu::BreakIterator& characterBreaks() {
  static const auto breaks = [] {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> made(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status)) throw std::runtime_error("ICU: no character iterator");
    return made;
  }();
  return *breaks;
}

/// Calls `use` with an iterator over the characters of the text.
template <class Use>
std::size_t withBreaks(std::u16string_view text, Use use) {
  const auto alias = readOnlyAlias(text);
  auto& breaks = characterBreaks();
  breaks.setText(alias);
  return static_cast<std::size_t>(use(breaks));
}

}  // namespace

TextField::TextField(std::string_view text)
    : text_(utf16(text)), anchor_(text_.size()), head_(text_.size()) {}

std::string TextField::text() const { return utf8(text_); }

std::size_t TextField::length() const { return characterAtOffset(text_.size()); }

std::pair<std::size_t, std::size_t> TextField::selection() const {
  return {characterAtOffset(begin()), characterAtOffset(end())};
}

std::string TextField::selectedText() const {
  return utf8(std::u16string_view(text_).substr(begin(), end() - begin()));
}

bool TextField::select(std::size_t from, std::size_t to) {
  if (from > to || to > length()) return false;
  anchor_ = offsetOfCharacter(from);
  head_ = offsetOfCharacter(to);
  return true;
}

void TextField::selectAll() {
  anchor_ = 0;
  head_ = text_.size();
}

void TextField::insert(std::string_view text) { replace(begin(), end(), utf16(text)); }

void TextField::paste(std::string_view text) {
  const auto inserted = utf16(text);
  lastPaste_ = Paste{begin(), inserted, text_.substr(begin(), end() - begin())};
  replace(begin(), end(), inserted);
}

void TextField::undoPaste() {
  const auto paste = std::exchange(lastPaste_, std::nullopt);
  if (!paste || paste->location > text_.size() ||
      text_.compare(paste->location, paste->inserted.size(), paste->inserted) != 0) {
    return;
  }
  replace(paste->location, paste->location + paste->inserted.size(), paste->removed);
  anchor_ = paste->location;
}

void TextField::deleteBackward() {
  replace(begin() == end() ? before(head_) : begin(), end(), u"");
}

void TextField::deleteForward() { replace(begin(), begin() == end() ? behind(head_) : end(), u""); }

void TextField::move(Target target, bool extend) {
  head_ = destination(target, extend);
  if (!extend) anchor_ = head_;
}

std::size_t TextField::destination(Target target, bool extend) const {
  const auto collapses = !extend && begin() != end();
  switch (target) {
    case Target::left:
      return collapses ? begin() : before(head_);
    case Target::right:
      return collapses ? end() : behind(head_);
    case Target::beginning:
      return 0;
    case Target::end:
      return text_.size();
  }
  return head_;
}

std::string TextField::takeTextBeforeCursor() {
  auto taken = utf8(std::u16string_view(text_).substr(0, head_));
  text_.erase(0, head_);
  anchor_ = head_ = 0;
  lastPaste_.reset();
  return taken;
}

std::size_t TextField::before(std::size_t offset) const {
  if (offset == 0) return 0;
  return withBreaks(text_, [&](icu::BreakIterator& breaks) {
    return breaks.preceding(static_cast<std::int32_t>(offset));
  });
}

std::size_t TextField::behind(std::size_t offset) const {
  if (offset == text_.size()) return offset;
  return withBreaks(text_, [&](icu::BreakIterator& breaks) {
    return breaks.following(static_cast<std::int32_t>(offset));
  });
}

std::size_t TextField::offsetOfCharacter(std::size_t index) const {
  return index == 0 ? 0 : withBreaks(text_, [&](icu::BreakIterator& breaks) {
    breaks.first();
    return breaks.next(static_cast<std::int32_t>(index));
  });
}

std::size_t TextField::characterAtOffset(std::size_t offset) const {
  const auto limit = static_cast<std::int32_t>(offset);
  return withBreaks(text_, [&](icu::BreakIterator& breaks) {
    std::int32_t count = 0;
    for (auto at = breaks.first(); at != icu::BreakIterator::DONE && at < limit;
         at = breaks.next()) {
      ++count;
    }
    return count;
  });
}

void TextField::replace(std::size_t from, std::size_t to, std::u16string_view with) {
  text_.replace(from, to - from, with);
  anchor_ = head_ = from + with.size();
}

}  // namespace kivra::embedded
