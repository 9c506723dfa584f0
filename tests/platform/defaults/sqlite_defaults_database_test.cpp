#include "platform/defaults/sqlite_defaults_database.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <sys/stat.h>

#include "platform/defaults/defaults_fixture.h"
#include "platform/defaults_contract.h"

namespace kivra {

namespace {

class SqliteBackend {
 public:
  DefaultsDatabase& database() { return database_; }

 private:
  TemporaryDirectory directory_;
  SqliteDefaultsDatabase database_{directory_.path() / "d.sqlite",
                                   [](std::string_view line) { ADD_FAILURE() << line; }};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Sqlite, DefaultsContract, SqliteBackend);

class SqliteDefaultsDatabaseTest : public DefaultsFixture {};

TEST_F(SqliteDefaultsDatabaseTest, MakesItsFileForTheUserAloneAtTheFirstWrite) {
  EXPECT_TRUE(storedOnDisk().empty());
  EXPECT_FALSE(std::filesystem::exists(path().parent_path()));
  opened().setObject(true, "key");
  struct stat found = {};
  ASSERT_EQ(stat(path().c_str(), &found), 0);
  EXPECT_EQ(found.st_mode & 0777U, 0600U);
  ASSERT_EQ(stat(path().parent_path().c_str(), &found), 0);
  EXPECT_EQ(found.st_mode & 0777U, 0700U);
}

TEST(UserDefaultsPath, FollowsTheBaseDirectories) {
  setenv("HOME", "/home/somebody", 1);
  setenv("XDG_CONFIG_HOME", "/etc/somewhere", 1);
  EXPECT_EQ(userDefaultsPath(), "/etc/somewhere/kivra/defaults.sqlite");
  for (const auto* ignored : {"", "relative"}) {
    setenv("XDG_CONFIG_HOME", ignored, 1);
    EXPECT_EQ(userDefaultsPath(), "/home/somebody/.config/kivra/defaults.sqlite");
  }
}

/// Keys of few letters, so that they meet again.
rc::Gen<std::string> someKey() {
  return rc::gen::container<std::string>(rc::gen::inRange('a', 'd'));
}

/// Nothing stands for a removal.
rc::Gen<std::optional<DefaultsValue>> someChange() {
  const auto bytes = rc::gen::arbitrary<std::string>();
  const auto changed = [](auto value) { return std::optional<DefaultsValue>(std::move(value)); };
  return rc::gen::oneOf(
      rc::gen::just(std::optional<DefaultsValue>()),
      rc::gen::map(rc::gen::arbitrary<bool>(), changed), rc::gen::map(bytes, changed),
      rc::gen::map(rc::gen::container<std::vector<std::string>>(bytes), changed),
      rc::gen::map(bytes, [changed](std::string data) { return changed(Data{std::move(data)}); }));
}

RC_GTEST_FIXTURE_PROP(SqliteDefaultsDatabaseTest, KeepsWhatTheChangesLeave, ()) {
  const auto changes = *rc::gen::container<std::vector<std::pair<std::string, std::size_t>>>(
      rc::gen::pair(someKey(), rc::gen::inRange<std::size_t>(0, 8)));
  StoredDictionary model;
  std::optional<SqliteDefaultsDatabase> database;
  for (const auto& [key, restart] : changes) {
    if (restart == 0) database.reset();
    if (!database)
      database.emplace(path(), [](std::string_view line) { RC_FAIL(std::string(line)); });
    const auto value = *someChange().as("value");
    if (value) {
      database->setObject(*value, key);
      model.insert_or_assign(key, *value);
    } else {
      database->removeObject(key);
      model.erase(key);
    }
    RC_ASSERT(database->dictionaryRepresentation() == model);
  }
  database.reset();
  RC_ASSERT(storedOnDisk() == model);
}

TEST_F(SqliteDefaultsDatabaseTest, LeavesValuesAloneThatItCannotRead) {
  opened().setObject(true, "good");
  {
    OtherProgram other(path());
    other.run(
        "INSERT INTO defaults VALUES ('a', 'date', 1), ('b', 'bool', 2), ('c', 'bool', 'yes'),"
        " ('d', 'string', 5), ('e', 'data', 'text'), ('f', 'array', '3:ab,'),"
        " ('g', 'array', '1:ab'), ('h', 'array', '-1:,'), ('i', 'array', '2:ab'),"
        " ('j', 'array', '18446744073709551615:a,'), ('k', 'array', '[\"x\"]')");
  }
  EXPECT_EQ(storedOnDisk(), (StoredDictionary{{"good", true}}));
  opened().setObject(false, "good");
  OtherProgram(path()).run("UPDATE defaults SET value = 1 WHERE key = 'b'");
  EXPECT_EQ(storedOnDisk(), (StoredDictionary{{"b", true}, {"good", false}}));
  EXPECT_TRUE(log().empty());
}

TEST_F(SqliteDefaultsDatabaseTest, WritesNothingIntoAFileOfANewerVersion) {
  opened().setObject(true, "old");
  OtherProgram(path()).run("PRAGMA user_version = 2");
  const auto before = contents(path());
  {
    auto database = opened();
    database.setObject(true, "new");
    EXPECT_EQ(database.dictionaryRepresentation(),
              (StoredDictionary{{"new", true}, {"old", true}}));
    EXPECT_FALSE(database.isSaved());
  }
  EXPECT_EQ(contents(path()), before);
  EXPECT_EQ(storedOnDisk(), (StoredDictionary{{"old", true}}));
  EXPECT_EQ(log().size(), 2U) << "one line for each program";
}

/// What can be wrong with a whole file, done to the bytes of a good one.
struct Damage {
  const char* name;
  std::string (*apply)(const std::string& good);
};

class DamagedFile : public DefaultsFixture, public ::testing::WithParamInterface<Damage> {};

INSTANTIATE_TEST_SUITE_P(
    Kinds, DamagedFile,
    ::testing::Values(
        Damage{"OneByte", [](const std::string&) { return std::string("x"); }},
        Damage{"Garbage", [](const std::string& good) { return std::string(good.size(), 'g'); }},
        Damage{"Truncated",
               [](const std::string& good) { return good.substr(0, good.size() / 2); }},
        Damage{"BadHeader", [](const std::string& good) { return "x" + good.substr(1); }},
        Damage{"KeysOutOfOrder",  // which reading does not meet
               [](const std::string& good) {
                 auto bytes = good;
                 return bytes.replace(bytes.rfind("first"), 5, "third");
               }},
        Damage{"FlippedInTheMiddle",
               [](const std::string& good) {
                 auto bytes = good;
                 for (auto i = bytes.size() / 2; i < bytes.size() / 2 + 4096; ++i) {
                   bytes[i] = static_cast<char>(~bytes[i]);
                 }
                 return bytes;
               }}),
    [](const auto& kind) { return kind.param.name; });

TEST_P(DamagedFile, IsSetAsideAndANewOneBegun) {
  std::multiset<std::string> expected;
  for (const std::size_t round : {1U, 2U}) {  // in one second, most likely
    opened().setObject(true, "first");
    opened().setObject(Data{std::string(100'000, 'v')}, "second");
    const auto damaged = GetParam().apply(contents(path()));
    overwrite(path(), damaged);
    overwrite(path().native() + "-wal", "left by a crash");
    expected.insert({damaged, "left by a crash"});
    {
      auto database = opened();
      EXPECT_TRUE(database.dictionaryRepresentation().empty());
      database.setObject(true, "fresh");
    }
    EXPECT_EQ(storedOnDisk(), (StoredDictionary{{"fresh", true}}));
    EXPECT_TRUE(setAsideContents() == expected);
    ASSERT_EQ(log().size(), round);
    EXPECT_NE(log().back().find("is damaged"), std::string::npos);
  }
}

TEST_F(SqliteDefaultsDatabaseTest, SetsAForeignDatabaseAsideAsItIs) {
  std::filesystem::create_directories(path().parent_path());
  OtherProgram(path()).run("CREATE TABLE defaults (other); PRAGMA user_version = 1");
  const auto foreign = contents(path());
  EXPECT_TRUE(storedOnDisk().empty());
  EXPECT_TRUE(setAsideContents() == std::multiset{foreign});
}

TEST_F(SqliteDefaultsDatabaseTest, KeepsTheLogOfAFileThatBecameEmpty) {
  std::filesystem::create_directories(path().parent_path());
  overwrite(path(), "");
  overwrite(path().native() + "-wal", "values");
  opened().setObject(true, "key");
  EXPECT_TRUE(setAsideContents() == (std::multiset<std::string>{"", "values"}));
  EXPECT_EQ(storedOnDisk(), (StoredDictionary{{"key", true}}));
}

TEST_F(SqliteDefaultsDatabaseTest, LosesNothingWhenTheFileBreaksUnderIt) {
  StoredDictionary expected;
  for (int i = 0; i < 50; ++i) {
    expected.emplace("key." + std::to_string(i), Data{std::string(1000, 'v')});
  }
  {
    auto database = opened();
    for (const auto& [key, value] : expected) database.setObject(value, key);
  }
  {
    auto database = opened();
    const auto bytes = contents(path());
    std::fstream file(path(), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(4096) << std::string(bytes.size() - 4096, '\xFF') << std::flush;
    OtherProgram(path()).run("PRAGMA user_version = 1");  // so that its pages are read again
    database.setObject(true, "key.1");
    EXPECT_TRUE(database.isSaved());
  }
  expected.insert_or_assign("key.1", true);
  EXPECT_EQ(storedOnDisk(), expected);
  EXPECT_EQ(log().size(), 1U);
  EXPECT_FALSE(setAsideContents().empty());
}

TEST_F(SqliteDefaultsDatabaseTest, WritesToThePathAfterItsFileWasRemoved) {
  auto database = opened();
  database.setObject(true, "first");
  std::filesystem::remove_all(path().parent_path());
  database.setObject(true, "second");
  EXPECT_EQ(storedOnDisk(), (StoredDictionary{{"second", true}}));
}

}  // namespace

}  // namespace kivra
