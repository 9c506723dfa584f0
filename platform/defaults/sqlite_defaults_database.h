#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "platform/defaults/defaults_file.h"
#include "platform/defaults_database.h"

namespace kivra {

/// This user's defaults: kivra/defaults.sqlite in the directory for configuration.
std::filesystem::path userDefaultsPath();

/// How long to wait for a lock of another process. Writes happen while a key is being handled.
struct DefaultsWaits {
  std::chrono::milliseconds atOpening{2000};
  std::chrono::milliseconds atWriting{100};
  std::chrono::milliseconds atClosing{1000};
};

/// The defaults in an SQLite file, which is made at the first write. Values are read when the
/// object is made and stand in memory from then on; what other processes write meanwhile stays in
/// the file and is seen at the next start. A write that the file refuses is tried again at the next
/// write and at the end.
///
/// A damaged file is set aside under another name, and a new one begun. A file that cannot be read
/// or belongs to a newer version is not written to: what it holds is not known. Each of these is
/// told to `log` once, in a line without any value.
class SqliteDefaultsDatabase : public DefaultsDatabase {
 public:
  using Log = std::function<void(std::string_view)>;

  SqliteDefaultsDatabase(std::filesystem::path path, Log log, DefaultsWaits waits = {});
  SqliteDefaultsDatabase(const SqliteDefaultsDatabase&) = delete;
  SqliteDefaultsDatabase& operator=(const SqliteDefaultsDatabase&) = delete;
  ~SqliteDefaultsDatabase() override;

  std::optional<DefaultsValue> objectForKey(std::string_view key) override;
  void setObject(const DefaultsValue& value, std::string_view key) override;
  void removeObject(std::string_view key) override;
  std::map<std::string, DefaultsValue> dictionaryRepresentation() override;

  /// Whether everything that was written is on disk.
  bool isSaved() const { return unsaved_.empty(); }

 private:
  FileStatus openAndLoad();
  FileStatus loadSnapshot();
  void save(std::chrono::milliseconds wait);
  FileStatus writeUnsaved(std::chrono::milliseconds wait);
  FileStatus write(const std::string& key);
  bool replaceDamagedFile();
  void reportOpening(FileStatus status);
  void reportOnce(std::string_view what);

  std::filesystem::path path_;
  Log log_;
  DefaultsWaits waits_;
  DefaultsFile file_;
  StoredValues values_;
  std::set<std::string, std::less<>> unsaved_;  ///< keys
  bool isWritable_ = true;
  bool hasReported_ = false;
};

}  // namespace kivra
