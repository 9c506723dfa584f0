#include "plain.h"

#include <gtest/gtest.h>

#include <sstream>

namespace kivra::desk {
namespace {

std::string typed(const std::string& text, const PlainOptions& options = {},
                  std::string* trace = nullptr) {
  std::istringstream input(text);
  std::ostringstream output;
  std::ostringstream log;
  typePlain(input, output, log, options);
  if (trace != nullptr) *trace = log.str();
  return output.str();
}

TEST(Plain, MendsWordsInEitherLayout) {
  EXPECT_EQ(typed("ghbdtn vbh\n"), "привет мир\n");
  EXPECT_EQ(typed("руддщ цщкдв\n", {.source = "ru"}), "hello world\n");
}

TEST(Plain, LeavesTheUnfinishedWordAlone) { EXPECT_EQ(typed("vbh"), "vbh"); }

TEST(Plain, DropsNoCharacter) {
  EXPECT_EQ(typed("a 😀 — «xy»\n\n\t1\r\n\rz"), "a 😀 — «xy»\n\n\t1\n\nz");
  EXPECT_EQ(typed("ghbdtn😀 vbh \n"), "ghbdtn😀 мир \n")
      << "a character without a key ends the word as a click does";
  EXPECT_EQ(typed("\xFF\n"), "\uFFFD\n");
  EXPECT_EQ(typed("и\u0306\n"), "и\u0306\n");
  EXPECT_EQ(typed(""), "");
}

TEST(Plain, TracesPostedEvents) {
  std::string trace;
  EXPECT_EQ(typed("IOS ", {.trace = true}, &trace), "iOS ");
  EXPECT_NE(trace.find(R"({"post":"text","text":"i","down":true,"marker":19286})"),
            std::string::npos);
}

TEST(Plain, TypesWordsOfAnyLength) {
  const std::string endless(20'000, 'q');
  EXPECT_EQ(typed(endless + " vexor\n"), endless + " VEXOR\n");
}

}  // namespace
}  // namespace kivra::desk
