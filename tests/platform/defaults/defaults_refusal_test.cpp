// Files that another program has locked, and places where nothing can be written.

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

#include "platform/defaults/defaults_fixture.h"

namespace kivra {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

class DefaultsRefusal : public DefaultsFixture {
 protected:
  /// Changes that meet the refusal are seen in the program; gives what the next one finds.
  void expectKeptInMemory(SqliteDefaultsDatabase& database) {
    database.setObject(std::string("kept"), "new");
    database.removeObject("removed");
    EXPECT_EQ(database.objectForKey("new"), DefaultsValue(std::string("kept")));
    EXPECT_EQ(database.objectForKey("removed"), std::nullopt);
    EXPECT_FALSE(database.isSaved());
    EXPECT_EQ(log().size(), 1U);
  }

  void store() {
    auto database = opened();
    database.setObject(true, "old");
    database.setObject(true, "removed");
  }

  const StoredDictionary stored_{{"old", true}, {"removed", true}};
};

TEST_F(DefaultsRefusal, OfALockedFileIsWaitedOutBrieflyAndMadeUpFor) {
  store();
  auto database = opened();
  {
    OtherProgram other(path());
    other.run("BEGIN IMMEDIATE");
    const auto start = steady_clock::now();
    database.setObject(true, "delayed");
    EXPECT_LT(steady_clock::now() - start, milliseconds(500));
    expectKeptInMemory(database);
    EXPECT_EQ(storedOnDisk(), stored_);
  }
  database.setObject(true, "later");
  EXPECT_TRUE(database.isSaved());
  EXPECT_EQ(storedOnDisk(),
            (StoredDictionary{
                {"delayed", true}, {"later", true}, {"new", std::string("kept")}, {"old", true}}));
}

TEST_F(DefaultsRefusal, IsMadeUpForAtTheEnd) {
  store();
  {
    auto database = opened();
    OtherProgram other(path());
    other.run("BEGIN IMMEDIATE");
    expectKeptInMemory(database);
    other.run("ROLLBACK");
  }
  EXPECT_EQ(storedOnDisk(), (StoredDictionary{{"new", std::string("kept")}, {"old", true}}));
}

TEST_F(DefaultsRefusal, WhileOpeningLeavesTheUnknownValuesAlone) {
  store();
  {
    OtherProgram other(path());
    other.run("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE");
    auto database = opened();
    EXPECT_TRUE(database.dictionaryRepresentation().empty());
    expectKeptInMemory(database);
    other.run("ROLLBACK; PRAGMA locking_mode = NORMAL; SELECT 1 FROM defaults");
    database.setObject(false, "old");
  }
  EXPECT_EQ(storedOnDisk(), stored_);
}

TEST_F(DefaultsRefusal, OfAPlaceThatCannotBe) {
  overwrite(path().parent_path(), "a file where the directory should be");
  {
    auto database = opened();
    expectKeptInMemory(database);
  }
  EXPECT_EQ(contents(path().parent_path()), "a file where the directory should be");
}

/// Gives up root's right to write everywhere.
class Unprivileged {
 public:
  Unprivileged() {
    if (geteuid() == 0) {
      EXPECT_EQ(seteuid(65534), 0);
    }
  }
  Unprivileged(const Unprivileged&) = delete;
  Unprivileged& operator=(const Unprivileged&) = delete;
  ~Unprivileged() {
    if (geteuid() != getuid()) {
      EXPECT_EQ(seteuid(getuid()), 0);
    }
  }
};

TEST_F(DefaultsRefusal, OfAReadOnlyDirectoryLeavesItsValuesToRead) {
  using std::filesystem::perms;
  store();
  std::filesystem::permissions(path().parent_path().parent_path(), perms(0555));
  std::filesystem::permissions(path().parent_path(), perms(0555));
  std::filesystem::permissions(path(), perms(0444));
  {
    const Unprivileged user;
    auto database = opened();
    EXPECT_EQ(database.dictionaryRepresentation(), stored_);
    expectKeptInMemory(database);
  }
  std::filesystem::permissions(path().parent_path(), perms(0755));
  EXPECT_EQ(storedOnDisk(), stored_);
}

TEST_F(DefaultsRefusal, OfAnUnreadableFileDoesNotReplaceIt) {
  using std::filesystem::perms;
  store();
  std::filesystem::permissions(path().parent_path().parent_path(), perms(0755));
  std::filesystem::permissions(path().parent_path(), perms(0777));
  std::filesystem::permissions(path(), perms::none);
  {
    const Unprivileged user;
    auto database = opened();
    expectKeptInMemory(database);
  }
  EXPECT_EQ(storedOnDisk(), stored_);
}

/// Lets no file grow beyond a size, as a full disk would.
class FullDisk {
 public:
  explicit FullDisk(rlim_t size) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit small = {size, before_.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  void (*handler_)(int);
  rlimit before_ = {};
};

TEST_F(DefaultsRefusal, OfAFullDiskHoldsUpOnlyWhatDoesNotFit) {
  store();
  const DefaultsValue large = Data{std::string(1'000'000, 'x')};
  {
    auto database = opened();
    database.setObject(true, "first");
    {
      const FullDisk disk(100'000);
      database.setObject(large, "large");
      EXPECT_FALSE(database.isSaved());
      EXPECT_EQ(database.objectForKey("large"), large);
      database.setObject(true, "small");
      EXPECT_EQ(storedOnDisk().size(), 4U) << "large is missing";
    }
    database.removeObject("small");
    EXPECT_TRUE(database.isSaved());
  }
  EXPECT_EQ(
      storedOnDisk(),
      (StoredDictionary{{"first", true}, {"large", large}, {"old", true}, {"removed", true}}));
  EXPECT_EQ(log().size(), 1U);
}

}  // namespace

}  // namespace kivra
