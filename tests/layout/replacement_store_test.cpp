#include "layout/replacement_store.h"

#include <gtest/gtest.h>

#include "platform/embedded/embedded_defaults_database.h"

namespace kivra {
namespace {

class ReplacementStoreTest : public testing::Test {
 protected:
  void store(const std::string& json) { database_.setObject(Data{json}, "kivra.replacements"); }

  static std::string patterns(const ReplacementStore& store) {
    std::string all;
    for (const auto& entry : store.entries()) all += entry.pattern + "=" + entry.replacement + ";";
    return all;
  }

  embedded::EmbeddedDefaultsDatabase database_;
  UserDefaults defaults_{database_};
};

constexpr auto samples = "vexor=VEXOR;vexor energy=VEXOR ENERGY;ios=iOS;";

TEST_F(ReplacementStoreTest, SeedsTheSamplesOnce) {
  {
    ReplacementStore first(defaults_);
    EXPECT_EQ(patterns(first), samples);
    EXPECT_EQ(first.maxWords(), 2U);
    first.remove(first.entries()[2].id);
  }
  EXPECT_EQ(defaults_.boolForKey("kivra.replacements.seed.ios"), true);
  EXPECT_EQ(patterns(ReplacementStore(defaults_)), "vexor=VEXOR;vexor energy=VEXOR ENERGY;");
}

TEST_F(ReplacementStoreTest, DoesNotSeedWhatTheUserHas) {
  store(R"([{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","pattern":"iOS","replacement":"x"}])");
  EXPECT_EQ(patterns(ReplacementStore(defaults_)), "iOS=x;");
}

TEST_F(ReplacementStoreTest, ReplacesUndecodableDataByTheSamples) {
  for (const auto* json :
       {R"([{"pattern":"a","replacement":"b"}])", "{}", "",
        R"([{"id":"x","pattern":"a","replacement":"b"}])",
        R"([{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","pattern":1,"replacement":"b"}])"}) {
    store(json);
    database_.removeObject("kivra.replacements.seed.ios");
    EXPECT_EQ(patterns(ReplacementStore(defaults_)), samples) << json;
    EXPECT_NE(database_.objectForKey("kivra.replacements"), DefaultsValue(Data{json}));
  }
}

TEST_F(ReplacementStoreTest, AddsTrimmedAndFindsTheSamePatternNormalized) {
  ReplacementStore store(defaults_);
  store.setEntries({});
  EXPECT_EQ(store.maxWords(), 1U);
  store.add(" Hello   World ", "hi\n");
  EXPECT_EQ(patterns(store), "Hello   World=hi;");
  const auto id = store.entries()[0].id;
  store.add("hello world", "hey");
  EXPECT_EQ(patterns(store), "Hello   World=hey;");
  EXPECT_EQ(store.entries()[0].id, id);
  EXPECT_EQ(store.index(), (ReplacementStore::Index{{"hello world", "hey"}}));
  store.add("я", "x");
  store.add(" 😀 ", "x");
  store.add("ab", " \t ");
  EXPECT_EQ(store.entries().size(), 1U);
  EXPECT_EQ(ReplacementStore(defaults_).entries(), store.entries()) << "saved at once";
}

TEST_F(ReplacementStoreTest, LoadsCollidingPatterns) {
  store(R"([{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","pattern":"ab","replacement":"1"},
            {"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E50","pattern":"AB ","replacement":"2"}])");
  ReplacementStore colliding(defaults_);
  EXPECT_EQ(colliding.lookup(" aB"), "2");
}

}  // namespace
}  // namespace kivra
