#include "support/json.h"

#include <gtest/gtest.h>

#include <string>

#include "support/uuid.h"

namespace kivra {
namespace {

TEST(Json, ReadsWholeNumbersThatFit) {
  const auto value = *json::parse(R"({"a":65535,"b":65536,"c":35.0,"d":35.5,"e":-1,"f":1e30,
                                      "g":18446744073709551615,"h":"7"})");
  EXPECT_EQ(json::integerMember<std::uint16_t>(value, "a"), 65535);
  EXPECT_EQ(json::integerMember<std::uint16_t>(value, "b"), std::nullopt);
  EXPECT_EQ(json::integerMember<std::uint16_t>(value, "c"), 35);
  EXPECT_EQ(json::integerMember<std::uint16_t>(value, "d"), std::nullopt);
  EXPECT_EQ(json::integerMember<std::uint16_t>(value, "e"), std::nullopt);
  EXPECT_EQ(json::integerMember<std::int16_t>(value, "e"), -1);
  EXPECT_EQ(json::integerMember<std::uint64_t>(value, "f"), std::nullopt);
  EXPECT_EQ(json::integerMember<std::uint64_t>(value, "g"), 18446744073709551615U);
  EXPECT_EQ(json::integerMember<std::int64_t>(value, "g"), std::nullopt);
  EXPECT_EQ(json::integerMember<std::int64_t>(value, "h"), std::nullopt);
}

TEST(Json, RefusesWhatIsNotOneWholeValue) {
  for (const auto* bytes : {"", "{", "{}x", "\xFF", "[1,]", "{\"a\":\"\xC3\"}"}) {
    EXPECT_FALSE(json::parse(bytes)) << bytes;
  }
}

TEST(Json, RefusesWhatCopiesOfWouldOverflowTheStack) {
  const auto nested = [](std::size_t levels) {
    return std::string(levels, '[') + "{\"a\":\"[{\\\"[\"}" + std::string(levels, ']');
  };
  EXPECT_FALSE(json::parse(nested(100'000)));
  EXPECT_FALSE(json::parse(nested(1000)));
  const auto value = json::parse(nested(999));
  ASSERT_TRUE(value);
  EXPECT_EQ(json::encode(*value), nested(999));
  const std::string brackets(5000, '[');
  EXPECT_EQ(json::parse("[\"" + brackets + "\"]")->at(0), brackets) << "a text is no nesting";
}

TEST(Uuid, SurvivesItsText) {
  const auto uuid = Uuid::random();
  EXPECT_EQ(Uuid::parsed(uuid.text()), uuid);
  EXPECT_EQ(Uuid::parsed("e621e1f8-c36c-495a-93fc-0c247a3e6e5f")->text(),
            "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
  EXPECT_FALSE(Uuid::parsed("E621E1F8C36C-495A-93FC-0C247A3E6E5F-"));
  EXPECT_FALSE(Uuid::parsed("E621E1F8-C36C-495A-93FC-0C247A3E6E5G"));
  EXPECT_NE(Uuid::random(), uuid);
}

}  // namespace
}  // namespace kivra
