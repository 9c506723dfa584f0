#include "platform/session/diagnosis.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kivra {
namespace {

SessionFacts whole() {
  return {.display = "Wayland (wayland-1)",
          .server = "sway",
          .isGuardRunning = true,
          .layouts = {"us", "ru"},
          .languages = {"en", "ru"},
          .inputMethod = SessionFacts::InputMethod::ours,
          .isAccessibilityOn = true,
          .hasSecrets = true,
          .hasTray = true};
}

/// The lines that are other ones than in a session that has everything.
std::vector<std::string> changed(const SessionFacts& facts) {
  auto lines = diagnosis(facts);
  const auto usual = diagnosis(whole());
  std::erase_if(lines,
                [&](const auto& line) { return std::ranges::find(usual, line) != usual.end(); });
  return lines;
}

TEST(Diagnosis, NamesNoRemedyWhereNothingIsMissing) {
  const auto lines = diagnosis(whole());
  EXPECT_EQ(lines.size(), 8U);
  for (const auto& line : lines) EXPECT_EQ(line.find("—"), std::string::npos) << line;
  EXPECT_EQ(lines[3], "Раскладки: us, ru");
}

TEST(Diagnosis, NamesWhatMendsEachThing) {
  auto facts = whole();
  facts.isAccessibilityOn = false;
  ASSERT_EQ(changed(facts).size(), 1U);
  EXPECT_NE(changed(facts)[0].find(accessibilityCommand), std::string::npos);
  facts.isGuardRunning = false;
  EXPECT_EQ(changed(facts)[0], "Клавиатура: без присмотра — сначала специальные возможности");
  facts = whole();
  facts.inputMethod = SessionFacts::InputMethod::taken;
  ASSERT_EQ(changed(facts).size(), 1U);
  EXPECT_NE(changed(facts)[0].find("завершите её"), std::string::npos);
  facts = whole();
  facts.languages = {"en"};
  ASSERT_EQ(changed(facts).size(), 1U);
  EXPECT_NE(changed(facts)[0].find("нет русской:"), std::string::npos);
  facts.languages = {};
  EXPECT_NE(changed(facts)[0].find("нет русской и английской:"), std::string::npos);
}

TEST(Diagnosis, TellsWhyTheDisplayDoesNotServe) {
  auto facts = whole();
  facts.server = "";
  facts.problem = "нет композитора";
  facts.isGuardRunning = false;
  const auto lines = changed(facts);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0], "Сервер окон: не отвечает — нет композитора");
  EXPECT_EQ(lines[1].find("kivra"), std::string::npos) << "a start mends nothing here";
}

}  // namespace
}  // namespace kivra
