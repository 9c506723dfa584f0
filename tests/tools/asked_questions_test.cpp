#include "asked_questions.h"

#include <gtest/gtest.h>

#include <string>

#include "session.h"

namespace kivra::events {
namespace {

TEST(AskedQuestions, AreToldByLengthAndNeverByTheText) {
  desk::Session session(nullptr, nullptr);
  session.desktop().spellChecker.setDictionary("ru", {"корова"}, {{"карова", "корова"}});
  session.desktop().spellChecker.setDictionary("en", {}, {});
  session.desktop().inputSources.select("ru");
  std::string lines;
  session.app().services.layoutSwitcher().setObserver(
      [&](const Answer& answer) { lines += questionLine(answer) + '\n'; });
  session.typist().type("карова ");
  EXPECT_EQ(lines.find("рова"), std::string::npos);
  EXPECT_TRUE(lines.starts_with("  asked secret of 6 characters: no\n")) << lines;
  EXPECT_NE(lines.find("\n  asked automatic: yes\n"), std::string::npos) << lines;
  EXPECT_NE(lines.find("\n  asked close of 6 characters: yes, distance 1\n"), std::string::npos)
      << lines;
}

TEST(AskedQuestions, OfAPasswordNothingIsAsked) {
  desk::Session session(nullptr, nullptr);
  session.desktop().application.front().secure = true;
  int asked = 0;
  session.app().services.layoutSwitcher().setObserver([&](const Answer&) { ++asked; });
  session.typist().type("ghbdtn ");
  EXPECT_EQ(asked, 0);
}

}  // namespace
}  // namespace kivra::events
