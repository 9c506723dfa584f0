#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/defaults_database.h"

namespace kivra {

/// What every defaults database does. `Backend` is default-constructible and has a function
/// `DefaultsDatabase& database()`, which is empty at first.
template <class Backend>
class DefaultsContract : public ::testing::Test {
 protected:
  DefaultsDatabase& database() { return backend_.database(); }

 private:
  Backend backend_;
};
TYPED_TEST_SUITE_P(DefaultsContract);

TYPED_TEST_P(DefaultsContract, GivesBackEveryValueAsItWasSet) {
  const std::string odd("a\0\n\xFF\xFE\"", 6);
  const std::vector<DefaultsValue> values = {
      true,
      false,
      std::string(),
      std::string("Привет, 世界"),
      odd,
      std::vector<std::string>{},
      std::vector<std::string>{"", "two words", "ещё", odd, ",:5"},
      Data{},
      Data{odd},
      Data{std::string(1 << 20, '\xAB')},
  };
  std::map<std::string, DefaultsValue> expected;
  for (const auto& value : values) {
    const auto key = "key." + std::to_string(expected.size());
    this->database().setObject(value, key);
    EXPECT_TRUE(this->database().objectForKey(key) == value) << key;
    expected.emplace(key, value);
  }
  EXPECT_TRUE(this->database().dictionaryRepresentation() == expected);
}

TYPED_TEST_P(DefaultsContract, ReplacesAValueAlsoByOneOfAnotherType) {
  this->database().setObject(std::string("1"), "key");
  this->database().setObject(Data{"1"}, "key");
  EXPECT_EQ(this->database().objectForKey("key"), DefaultsValue(Data{"1"}));
  this->database().setObject(true, "key");
  EXPECT_EQ(this->database().objectForKey("key"), DefaultsValue(true));
  EXPECT_EQ(this->database().dictionaryRepresentation().size(), 1U);
}

TYPED_TEST_P(DefaultsContract, RemovesOneKeyAndMindsNoneThatIsAbsent) {
  this->database().setObject(true, "a");
  this->database().setObject(true, "b");
  this->database().removeObject("a");
  this->database().removeObject("never set");
  EXPECT_EQ(this->database().objectForKey("a"), std::nullopt);
  EXPECT_EQ(this->database().dictionaryRepresentation(),
            (std::map<std::string, DefaultsValue>{{"b", true}}));
}

TYPED_TEST_P(DefaultsContract, TellsKeysApartByEveryByte) {
  const std::vector<std::string> keys = {"", "k", "K", std::string("k\0x", 3), "к"};
  for (const auto& key : keys) this->database().setObject(key, key);
  for (const auto& key : keys) {
    EXPECT_EQ(this->database().objectForKey(key), DefaultsValue(key));
  }
}

REGISTER_TYPED_TEST_SUITE_P(DefaultsContract, GivesBackEveryValueAsItWasSet,
                            ReplacesAValueAlsoByOneOfAnotherType,
                            RemovesOneKeyAndMindsNoneThatIsAbsent, TellsKeysApartByEveryByte);

}  // namespace kivra
