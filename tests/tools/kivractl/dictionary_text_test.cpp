#include "dictionary_text.h"

#include <gtest/gtest.h>

namespace kivra::control {

void PrintTo(const DictionaryText::Pair& pair, std::ostream* stream) {
  *stream << pair.line << ": " << pair.pattern << " -> " << pair.replacement;
}

void PrintTo(const LineNote& note, std::ostream* stream) {
  *stream << note.line << ": " << note.text;
}

namespace {

using enum DictionaryFormat;
using Pairs = std::vector<DictionaryText::Pair>;

std::vector<std::size_t> lines(const std::vector<LineNote>& notes) {
  std::vector<std::size_t> numbers;
  numbers.reserve(notes.size());
  for (const auto& note : notes) numbers.push_back(note.line);
  return numbers;
}

using Numbers = std::vector<std::size_t>;

TEST(DictionaryText, TellsTheFormatByTheEnding) {
  EXPECT_EQ(dictionaryFormat("слова.TSV"), tsv);
  EXPECT_EQ(dictionaryFormat("a/b.txt"), tsv);
  EXPECT_EQ(dictionaryFormat("x.csv"), csv);
  EXPECT_EQ(dictionaryFormat("base.yml"), yaml);
  EXPECT_EQ(dictionaryFormat("base.yaml"), yaml);
  EXPECT_EQ(dictionaryFormat("base"), std::nullopt);
  EXPECT_EQ(dictionaryFormat("tsv"), std::nullopt);
}

TEST(DictionaryText, ReadsTabs) {
  const auto read = readDictionary("\xEF\xBB\xBFios\tiOS\r\n\n адр \tул. Мира\\n\\t1\\\\2", tsv);
  EXPECT_EQ(read.pairs, (Pairs{{1, "ios", "iOS"}, {3, " адр ", "ул. Мира\n\t1\\2"}}));
  EXPECT_TRUE(read.bad.empty());
}

TEST(DictionaryText, NamesBadLines) {
  const auto* text =
      "ios iOS\n"      // no tab
      "ab\tc\td\n"     // two
      "ok\tfine\n"     //
      "x\ty\n"         // a short pattern
      "empty\t \n"     //
      "bad\t\\x\n"     // an escape
      "latin\t\xE9\n"  // not UTF-8
      "OK\tagain";
  const auto read = readDictionary(text, tsv);
  EXPECT_EQ(read.pairs, (Pairs{{3, "ok", "fine"}}));
  EXPECT_EQ(lines(read.bad), (Numbers{1, 2, 4, 5, 6, 7, 8}));
  EXPECT_EQ(read.bad.back().text, "the pattern stands in line 3 too");
}

TEST(DictionaryText, ReadsCommas) {
  const auto read = readDictionary("ios,iOS\r\n\"a,b\",\"c \"\"d\"\"\ne\"\nпр,привет", csv);
  EXPECT_EQ(read.pairs, (Pairs{{1, "ios", "iOS"}, {2, "a,b", "c \"d\"\ne"}, {4, "пр", "привет"}}));
  EXPECT_TRUE(read.bad.empty());
}

TEST(DictionaryText, NamesBadRecords) {
  const auto read = readDictionary("one\na,b,c\n\"ab\"x,y\nok,fine\n\"open,z\nlast,one", csv);
  EXPECT_EQ(read.pairs, (Pairs{{4, "ok", "fine"}}));
  EXPECT_EQ(lines(read.bad), (Numbers{1, 2, 3, 5}));
}

TEST(DictionaryText, ReadsMatches) {
  const auto* text =
      "# mine\n"
      "matches:\n"
      "  - trigger: ios   # a comment\n"
      "    replace: \"i\\\"OS\\u0021\"\n"
      "\n"
      "  - trigger: ':адр'\n"
      "    replace: 'don''t'\n"
      "    word: true\n"
      "  -   replace: c# and a:b\n"
      "      trigger: cc\n";
  const auto read = readDictionary(text, yaml);
  EXPECT_EQ(read.pairs,
            (Pairs{{3, "ios", "i\"OS!"}, {6, ":адр", "don't"}, {9, "cc", "c# and a:b"}}));
  EXPECT_TRUE(read.bad.empty());
  EXPECT_TRUE(read.leftOut.empty());
  EXPECT_EQ(readDictionary("matches:\n- trigger: ab\n  replace: cd\n", yaml).pairs,
            (Pairs{{2, "ab", "cd"}}));
}

TEST(DictionaryText, LeavesOtherMatchesOut) {
  const auto* text =
      "global_vars:\n"
      "  - name: x\n"
      "matches:\n"
      "  - trigger: date\n"
      "    replace: \"{{d}}\"\n"
      "    vars:\n"
      "      - name: d\n"
      "        type: date\n"
      "  - regex: a+\n"
      "    replace: b\n"
      "  - trigger: long\n"
      "    replace: |\n"
      "      two\n"
      "      lines\n"
      "  - { trigger: aa, replace: bb }\n"
      "  - triggers: [cc, dd]\n"
      "    replace: ee\n"
      "  - trigger: last\n"
      "    replace: one\n";
  const auto read = readDictionary(text, yaml);
  EXPECT_EQ(read.pairs, (Pairs{{18, "last", "one"}}));
  EXPECT_EQ(lines(read.leftOut), (Numbers{1, 4, 9, 11, 15, 16}));
  EXPECT_TRUE(read.bad.empty()) << read.bad[0].line << read.bad[0].text;
}

TEST(DictionaryText, NamesBadMatches) {
  EXPECT_EQ(lines(readDictionary("ios\tiOS\n", yaml).bad), (Numbers{1, 1}));
  const auto read = readDictionary(
      "matches:\n  - trigger: aa\n  - trigger bb\n    replace: b\n\t- x\n oops\n", yaml);
  EXPECT_EQ(lines(read.bad), (Numbers{2, 3, 5, 6}));
  EXPECT_TRUE(read.pairs.empty());
}

TEST(DictionaryText, ReadsWhatItHasWritten) {
  const std::vector<ReplacementStore::Entry> entries = {
      {Uuid::random(), "ios", "iOS"},
      {Uuid::random(), "два слова", "tab\there, \"quotes\" 'and' \\ #: {x}\nнова строка"},
      {Uuid::random(), "- dash", "👍🏽"}};
  for (const auto format : {tsv, csv, yaml}) {
    const auto read = readDictionary(writtenDictionary(entries, format), format);
    ASSERT_EQ(read.pairs.size(), entries.size());
    EXPECT_TRUE(read.bad.empty() && read.leftOut.empty());
    for (std::size_t i = 0; i < entries.size(); ++i) {
      EXPECT_EQ(read.pairs[i].pattern, entries[i].pattern);
      EXPECT_EQ(read.pairs[i].replacement, entries[i].replacement);
    }
  }
}

}  // namespace
}  // namespace kivra::control
