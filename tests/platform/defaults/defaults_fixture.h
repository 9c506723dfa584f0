#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/defaults/sqlite_defaults_database.h"

namespace kivra {

using StoredDictionary = std::map<std::string, DefaultsValue>;

/// A directory that goes with the test.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    auto pattern = (std::filesystem::temp_directory_path() / "kivra-test-XXXXXX").native();
    path_ = mkdtemp(pattern.data()) == nullptr ? "" : pattern;
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory() { std::filesystem::remove_all(path_); }

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

inline std::string contents(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void overwrite(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

/// Another program at work on the same file.
class OtherProgram {
 public:
  explicit OtherProgram(const std::filesystem::path& path) {
    EXPECT_EQ(sqlite3_open(path.c_str(), &connection_), SQLITE_OK);
  }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;
  ~OtherProgram() { sqlite3_close(connection_); }

  void run(const char* sql) {
    EXPECT_EQ(sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(connection_);
  }

 private:
  sqlite3* connection_ = nullptr;
};

/// A defaults file in a directory of its own, which programs open one after the other.
class DefaultsFixture : public ::testing::Test {
 protected:
  SqliteDefaultsDatabase opened() {
    using std::chrono::milliseconds;
    return {path(), [this](std::string_view line) { log_.emplace_back(line); },
            DefaultsWaits{milliseconds(600), milliseconds(50), milliseconds(50)}};
  }

  StoredDictionary storedOnDisk() { return opened().dictionaryRepresentation(); }

  std::filesystem::path path() const { return directory_.path() / "kivra" / "defaults.sqlite"; }
  const std::vector<std::string>& log() const { return log_; }

  /// What stands in the damaged files next to the database and in their logs.
  std::multiset<std::string> setAsideContents() const {
    std::multiset<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(path().parent_path())) {
      const auto name = entry.path().filename().native();
      if (name.starts_with("defaults.sqlite.damaged-") && !name.ends_with("-shm")) {
        found.insert(contents(entry.path()));
      }
    }
    return found;
  }

 private:
  TemporaryDirectory directory_;
  std::vector<std::string> log_;
};

}  // namespace kivra
