#include "term_counter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>

#include "platform/spelling/letter_code.h"

namespace kivra {
namespace {

std::map<std::string, Term> termsOf(std::string_view text) {
  TermCounter counter;
  counter.add(text);
  std::map<std::string, Term> byWord;
  for (const Term& term : counter.terms()) byWord[decodeWord(term.code)] = term;
  return byWord;
}

TEST(TermCounter, takesWordsOfSeveralDocuments) {
  const auto terms = termsOf("endian Endian writen writen writen ways\fendian ways ways mode mode");
  ASSERT_TRUE(terms.contains("endian"));
  EXPECT_EQ(terms.at("endian").seen, seenLower | seenCapitalised);
  EXPECT_DOUBLE_EQ(terms.at("endian").share, 3.0 / 11);
  EXPECT_TRUE(terms.contains("ways"));
  EXPECT_FALSE(terms.contains("writen"));  // one writer's slip
  EXPECT_FALSE(terms.contains("mode"));
}

TEST(TermCounter, countsWhatThreeDocumentsHave) {
  const auto terms = termsOf("socket twice\fsocket twice twice\fsocket");
  EXPECT_EQ(terms.at("socket").seen, seenLower | seenCounted);
  EXPECT_EQ(terms.at("twice").seen, seenLower);
}

TEST(TermCounter, addsTextsUp) {
  TermCounter counter;
  counter.add("коммит, коммит");
  counter.add("коммит");
  ASSERT_EQ(counter.terms().size(), 1U);
  EXPECT_EQ(decodeWord(counter.terms().front().code), "коммит");
}

TEST(TermCounter, leavesPiecesOut) {
  const std::string page = "П_рофиль MAP_FIXED pre-emptive doesn't x86page don’t";
  EXPECT_TRUE(termsOf(page + "\f" + page + "\f" + page).empty());
}

TEST(TermCounter, readsCataloguesOfMessages) {
  using namespace std::string_literals;
  const auto catalogue = "\xDE\x12\x04\x95\0\0\xFF\xFE\0сокет\0сокёт\0"s;
  const auto terms = termsOf(catalogue + "\f" + catalogue);
  EXPECT_EQ(terms.size(), 1U);
  EXPECT_TRUE(terms.contains("сокет"));
}

}  // namespace
}  // namespace kivra
