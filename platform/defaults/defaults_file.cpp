#include "platform/defaults/defaults_file.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/defaults/statement.h"

namespace kivra {

namespace {

constexpr int knownVersion = 1;

// One row is one value, so that a value is stored whole or not at all.
constexpr auto createSchema =
    "CREATE TABLE defaults (key TEXT PRIMARY KEY NOT NULL, type TEXT NOT NULL, value NOT NULL)"
    " WITHOUT ROWID; PRAGMA user_version = 1;";

constexpr auto selectAll = "SELECT key, type, value FROM defaults";

FileStatus statusOf(int code) {
  switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return FileStatus::ok;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
      return FileStatus::busy;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR:  // our statements are sound: the tables of the file are not ours
      return FileStatus::damaged;
    default:
      return FileStatus::failed;
  }
}

bool createDirectories(const std::filesystem::path& directory) {
  std::error_code error;
  if (directory.empty() || std::filesystem::is_directory(directory, error)) return true;
  if (directory.has_relative_path() && !createDirectories(directory.parent_path())) return false;
  return mkdir(directory.c_str(), 0700) == 0 || errno == EEXIST;
}

bool createFile(const std::filesystem::path& path) {
  if (!createDirectories(path.parent_path())) return false;
  // An existing file is not even opened: closing it would drop this process's locks on it.
  const int file = ::open(path.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0600);
  if (file < 0) return errno == EEXIST;
  ::close(file);
  return true;
}

FileStatus presence(const std::filesystem::path& path) {
  struct stat found = {};
  if (stat(path.c_str(), &found) != 0) {
    return errno == ENOENT || errno == ENOTDIR ? FileStatus::absent : FileStatus::failed;
  }
  // SQLite would delete the log of an empty file, and with it what is left of the values. It takes
  // a single byte for none.
  struct stat log = {};
  const bool orphanedLog = found.st_size <= 1 && S_ISREG(found.st_mode) &&
                           stat((path.native() + "-wal").c_str(), &log) == 0 && log.st_size > 0;
  return orphanedLog ? FileStatus::damaged : FileStatus::ok;
}

std::string snapshotUri(const std::filesystem::path& path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string uri = "file:";
  for (const char c : path.native()) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isalnum(byte) != 0 || c == '/') {
      uri += c;
    } else {
      uri.append({'%', digits[byte >> 4U], digits[byte & 0xFU]});
    }
  }
  return uri + "?immutable=1";
}

/// Lets nothing in a file from elsewhere run.
void distrustFile(sqlite3* connection) {
  sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
}

FileStatus versionOf(sqlite3* connection, std::int64_t& version) {
  Statement statement(connection, "PRAGMA user_version");
  const int code = statement.step();
  version = code == SQLITE_ROW ? statement.integer(0) : 0;
  return statusOf(code);
}

}  // namespace

void DefaultsFile::Closer::operator()(sqlite3* connection) const { sqlite3_close(connection); }

FileStatus DefaultsFile::open(const std::filesystem::path& path, FileAccess access,
                              std::chrono::milliseconds wait) {
  close();
  if (access == FileAccess::created && !createFile(path)) return FileStatus::failed;
  if (const auto found = presence(path); found != FileStatus::ok) return found;
  if (const auto connected = connect(path, access); connected != FileStatus::ok) return connected;
  setWait(wait);
  const auto checked = check();
  if (checked != FileStatus::ok || access == FileAccess::snapshot) return checked;
  return prepareForWriting();
}

void DefaultsFile::close() { connection_.reset(); }

void DefaultsFile::abandon() {
  if (!isOpen()) return;
  // The last connection to close would write the log into the file and delete it.
  sqlite3_db_config(connection_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  close();
}

FileStatus DefaultsFile::connect(const std::filesystem::path& path, FileAccess access) {
  const bool snapshot = access == FileAccess::snapshot;
  const auto name = snapshot ? snapshotUri(path) : path.native();
  const int flags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE |
                    (snapshot ? SQLITE_OPEN_READONLY | SQLITE_OPEN_URI : SQLITE_OPEN_READWRITE);
  sqlite3* connection = nullptr;
  const int code = sqlite3_open_v2(name.c_str(), &connection, flags, nullptr);
  connection_.reset(connection);
  if (code != SQLITE_OK) {
    close();
    return statusOf(code);
  }
  distrustFile(connection);
  return FileStatus::ok;
}

FileStatus DefaultsFile::check() {
  std::int64_t version = 0;
  if (const auto read = versionOf(connection_.get(), version); read != FileStatus::ok) return read;
  if (version != 0 && version != knownVersion) return FileStatus::newer;
  // The quick check does not notice rows out of order, which would be written but never found.
  Statement statement(connection_.get(), "PRAGMA integrity_check(1)");
  const int code = statement.step();
  if (code != SQLITE_ROW) return statusOf(code);
  if (statement.bytes(0) != "ok") return FileStatus::damaged;
  return version == 0 ? FileStatus::ok : statusOf(Statement(connection_.get(), selectAll).step());
}

FileStatus DefaultsFile::prepareForWriting() {
  execute("PRAGMA synchronous = FULL");
  // Where the file system cannot do it, SQLite stays with a rollback journal, which is as safe.
  execute("PRAGMA journal_mode = WAL");
  std::int64_t version = 0;
  if (const auto read = versionOf(connection_.get(), version);
      read != FileStatus::ok || version != 0) {
    return read;
  }
  if (const auto begun = execute("BEGIN IMMEDIATE"); begun != FileStatus::ok) return begun;
  // Another process may have been first.
  auto status = versionOf(connection_.get(), version);
  if (status == FileStatus::ok && version == 0) status = execute(createSchema);
  if (status == FileStatus::ok) status = execute("COMMIT");
  if (status != FileStatus::ok) execute("ROLLBACK");
  return status;
}

FileStatus DefaultsFile::execute(const char* sql) {
  return statusOf(sqlite3_exec(connection_.get(), sql, nullptr, nullptr, nullptr));
}

bool DefaultsFile::hasMoved() const {
  int moved = 0;
  if (isOpen()) {
    sqlite3_file_control(connection_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
  }
  return moved != 0;
}

void DefaultsFile::setWait(std::chrono::milliseconds wait) {
  lockWait_.limit = wait;
  sqlite3_busy_handler(connection_.get(), waitForLock, &lockWait_);
}

/// Asks again every millisecond: locks are short, and a key may be waiting. SQLite's own handler
/// sleeps ever longer, and starves beside a program that writes much.
int DefaultsFile::waitForLock(void* lockWait, int timesAsked) {
  auto& wait = *static_cast<LockWait*>(lockWait);
  const auto now = std::chrono::steady_clock::now();
  if (timesAsked == 0) wait.end = now + wait.limit;
  if (now >= wait.end) return 0;
  std::this_thread::sleep_for(std::chrono::milliseconds(1));
  return 1;
}

FileStatus DefaultsFile::load(StoredValues& values) {
  Statement rows(connection_.get(), selectAll);
  int code = SQLITE_OK;
  while ((code = rows.step()) == SQLITE_ROW) {
    if (auto value = decodedValue(rows.bytes(1), rows, 2)) {
      values.insert_or_assign(rows.bytes(0), std::move(*value));
    }
  }
  return statusOf(code);
}

FileStatus DefaultsFile::put(std::string_view key, const DefaultsValue& value) {
  Statement statement(connection_.get(),
                      "INSERT OR REPLACE INTO defaults (key, type, value) VALUES (?, ?, ?)");
  ValueBinder binder(statement, 2);
  statement.bindText(1, key);
  std::visit(binder, value);
  return statusOf(statement.step());
}

FileStatus DefaultsFile::erase(std::string_view key) {
  Statement statement(connection_.get(), "DELETE FROM defaults WHERE key = ?");
  statement.bindText(1, key);
  return statusOf(statement.step());
}

}  // namespace kivra
