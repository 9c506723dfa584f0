#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/defaults_database.h"

struct sqlite3;

namespace kivra {

/// What became of an operation on the file.
enum class FileStatus {
  ok,
  absent,   ///< there is no such file
  busy,     ///< another process kept it locked for longer than the wait
  damaged,  ///< not a defaults file, or broken
  newer,    ///< laid out by a version of the program that is not known here
  failed,   ///< refused by the system: permissions, no space
};

enum class FileAccess {
  existing,  ///< a file that is not there stays so
  created,   ///< made when it is not there, with its directory, readable by the user alone
  snapshot,  ///< for reading what stands in the file where SQLite cannot make its own files
};

using StoredValues = std::map<std::string, DefaultsValue, std::less<>>;

/// The SQLite file in which defaults stand. An operation that has returned `ok` survives the death
/// of the process and of the machine. Nothing throws.
class DefaultsFile {
 public:
  DefaultsFile() = default;
  DefaultsFile(const DefaultsFile&) = delete;  // SQLite has the address of lockWait_
  DefaultsFile& operator=(const DefaultsFile&) = delete;

  /// Opens and checks the file. While the status is `newer` or `damaged` it is open as well, and
  /// must not be written to.
  FileStatus open(const std::filesystem::path& path, FileAccess access,
                  std::chrono::milliseconds wait);

  void close();

  /// Closes a file that is not to be changed by it.
  void abandon();

  bool isOpen() const { return connection_ != nullptr; }

  /// Whether the path now leads to another file, or to none.
  bool hasMoved() const;

  /// How long operations wait for a lock of another process.
  void setWait(std::chrono::milliseconds wait);

  /// Adds what is stored; a row that cannot be understood is left out.
  FileStatus load(StoredValues& values);

  FileStatus put(std::string_view key, const DefaultsValue& value);
  FileStatus erase(std::string_view key);

 private:
  struct Closer {
    void operator()(sqlite3* connection) const;
  };

  struct LockWait {
    std::chrono::milliseconds limit{0};
    std::chrono::steady_clock::time_point end;  ///< of the wait under way
  };

  static int waitForLock(void* lockWait, int timesAsked);
  FileStatus connect(const std::filesystem::path& path, FileAccess access);
  FileStatus check();
  FileStatus prepareForWriting();
  FileStatus execute(const char* sql);

  LockWait lockWait_;
  std::unique_ptr<sqlite3, Closer> connection_;
};

}  // namespace kivra
