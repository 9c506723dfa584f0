// What stands in the file when programs die while writing, or write at the same time.

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <random>
#include <thread>

#include "platform/defaults/defaults_fixture.h"

namespace {
int syncs = 0;
}

// Stands before the C library's function in this program, where no test can cut the power: it is
// enough that SQLite asks, and the tests need not wait for the disk.
extern "C" int fdatasync(int /*file*/) {
  ++syncs;
  return 0;
}

namespace kivra {

namespace {

using Acknowledge = std::function<void(int)>;

/// Another process, which tells what it has done.
class Child {
 public:
  explicit Child(const std::function<void(const Acknowledge&)>& work) {
    int ends[2] = {};
    EXPECT_EQ(pipe(ends), 0);
    input_ = ends[0];
    process_ = fork();
    if (process_ == 0) {
      work([&](int done) {
        if (write(ends[1], &done, sizeof done) != sizeof done) _exit(1);
      });
      _exit(0);
    }
    close(ends[1]);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    stop();
    close(input_);
  }

  /// Waits for the next acknowledgement; nothing when there are no more.
  std::optional<int> next() {
    int done = 0;
    return read(input_, &done, sizeof done) == sizeof done ? std::optional(done) : std::nullopt;
  }

  void stop() {
    if (process_ <= 0) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = -1;
  }

 private:
  pid_t process_ = -1;
  int input_ = -1;
};

class DefaultsCrash : public DefaultsFixture {
 protected:
  /// A program that stores ever greater numbers until it is stopped.
  std::function<void(const Acknowledge&)> counting(int from, const std::string& key) {
    return [this, from, key](const Acknowledge& acknowledge) {
      auto database = opened();
      for (int i = from;; ++i) {
        database.setObject(std::vector<std::string>(static_cast<std::size_t>(i % 300), "value"),
                           "other");
        database.setObject(std::to_string(i), key);
        if (database.isSaved()) acknowledge(i);
      }
    };
  }

  /// The number under the key on disk, 0 when there is none.
  int numberOnDisk(const std::string& key) {
    const auto value = opened().objectForKey(key);
    const auto* text = value ? std::get_if<std::string>(&*value) : nullptr;
    return text == nullptr ? 0 : std::stoi(*text);
  }
};

TEST_F(DefaultsCrash, KeepsEveryAcknowledgedWrite) {
  std::mt19937 random(std::random_device{}());
  int last = 0;
  for (int round = 0; round < 25; ++round) {
    Child child(counting(last + 1, "number"));
    ASSERT_TRUE(child.next().has_value());
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 30'000));
    child.stop();
    int acknowledged = last + 1;
    while (const auto more = child.next()) acknowledged = *more;
    last = numberOnDisk("number");
    // The last write may have been stored without having been told.
    ASSERT_TRUE(last == acknowledged || last == acknowledged + 1) << acknowledged << " " << last;
  }
  EXPECT_TRUE(log().empty()) << log().front();
}

TEST_F(DefaultsCrash, SyncsEveryWriteBeforeItReturns) {
  auto database = opened();
  for (int i = 0; i < 3; ++i) {
    const int before = syncs;
    database.setObject(i == 1, "key");
    EXPECT_GT(syncs, before);
  }
}

TEST_F(DefaultsCrash, LetsOtherProgramsReadAndWriteMeanwhile) {
  Child child(counting(1, "theirs"));
  auto mine = opened();
  int seen = 0;
  for (int i = 1; i <= 100; ++i) {
    const auto acknowledged = child.next();
    ASSERT_TRUE(acknowledged.has_value());
    mine.setObject(std::to_string(i), "mine");
    const auto now = numberOnDisk("theirs");
    EXPECT_GE(now, std::max(seen, *acknowledged));
    seen = now;
  }
  child.stop();
  mine.setObject(std::string("101"), "mine");
  EXPECT_EQ(numberOnDisk("mine"), 101);
  EXPECT_TRUE(setAsideContents().empty());
}

}  // namespace

}  // namespace kivra
