#include "why.h"

#include <gtest/gtest.h>

#include "platform/embedded/embedded_defaults_database.h"
#include "support/json.h"

namespace kivra::control {
namespace {

const LayoutNames usAndRu = {{"us", "en"}, {"ru", "ru"}};

/// The questions in their order, with "-" before those that were answered no.
std::string questions(const std::string& text, DefaultsDatabase& stored, std::size_t layout) {
  const auto parsed = json::parse(explanationJson(explain(text, stored, usAndRu)));
  std::string line;
  for (const auto& asked : parsed->at(layout).at("questions")) {
    line += (line.empty() ? "" : " ") + std::string(asked.at("answer") ? "" : "-") +
            asked.at("question").get<std::string>();
  }
  return line + " = " + parsed->at(layout).at("change").get<std::string>() + " " +
         parsed->at(layout).at("result").get<std::string>();
}

class Why : public testing::Test {
 protected:
  std::string typedIn(const char* layout, const std::string& text) {
    return questions(text, stored_, layout == std::string("us") ? 0 : 1);
  }

  embedded::EmbeddedDefaultsDatabase stored_;
};

TEST_F(Why, ListsEachQuestionUpToTheOutcome) {
  const std::string start = "-secret -learned -dictionary -dictionary automatic -learned ";
  EXPECT_EQ(typedIn("us", "ghbdtn"),
            start + "lettersThere -wordHere wordThere = layoutSwitch привет");
  EXPECT_EQ(typedIn("ru", "ghbdtn"), start +
                                         "lettersThere wordHere letters -twoCapitals "
                                         "longEnough wordHere = none привет");
  EXPECT_EQ(typedIn("ru", "карова"),
            start +
                "lettersThere -wordHere -wordThere letters -twoCapitals longEnough -wordHere "
                "guess close -learned = correct корова");
  EXPECT_EQ(typedIn("us", "z"), start + "lettersThere -letterHere letterThere = layoutSwitch я");
  EXPECT_EQ(typedIn("us", "Ghbdtn2024"), "secret = none Ghbdtn2024");
  EXPECT_EQ(typedIn("us", "ios"), "-secret -learned dictionary = replacement iOS");
}

TEST_F(Why, StandsOnTheStoredValuesAndKeepsNothing) {
  stored_.setObject(std::vector<std::string>{"ghbdtn"}, "kivra.exceptions");
  stored_.setObject(false, "kivra.isEnabled");
  const auto before = stored_.dictionaryRepresentation();
  EXPECT_EQ(typedIn("us", "ghbdtn"), "-secret learned automatic learned = none ghbdtn");
  EXPECT_EQ(stored_.dictionaryRepresentation(), before);
}

TEST_F(Why, TellsItInLines) {
  const auto text = explanationText(explain("карова", stored_, usAndRu));
  EXPECT_NE(text.find("Layout us: the keys give rfhjdf\n"), std::string::npos) << text;
  EXPECT_NE(text.find("\n  корова  is it close enough?                yes, distance 1\n"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("  -> корова (respelled)\n"), std::string::npos) << text;
}

TEST_F(Why, ReadsTheKeysInTheUsersLayouts) {
  const LayoutNames phonetic = {{"us", "en"}, {"ru(phonetic)", "ru"}};
  const auto explanations = explain("odnako", stored_, phonetic);
  ASSERT_EQ(explanations.size(), 2U);
  EXPECT_EQ(explanations[0].change, UndoStack::ActionKind::layoutSwitch);
  EXPECT_EQ(explanations[0].result, "однако ");
  EXPECT_EQ(explanations[1].typed, "однако");
}

}  // namespace
}  // namespace kivra::control
