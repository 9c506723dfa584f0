#include "platform/defaults/sqlite_defaults_database.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

#include "platform/defaults/set_aside.h"

namespace kivra {

namespace {

/// The path in an environment variable; a relative one counts as not set.
std::filesystem::path absolutePathFrom(const char* variable) {
  const char* value = std::getenv(variable);
  std::filesystem::path path = value == nullptr ? "" : value;
  return path.is_absolute() ? path : std::filesystem::path();
}

std::filesystem::path homeDirectory() {
  if (auto home = absolutePathFrom("HOME"); !home.empty()) return home;
  const auto* user = getpwuid(getuid());
  return user == nullptr ? "/" : user->pw_dir;
}

}  // namespace

std::filesystem::path userDefaultsPath() {
  auto directory = absolutePathFrom("XDG_CONFIG_HOME");
  if (directory.empty()) directory = homeDirectory() / ".config";
  return directory / "kivra" / "defaults.sqlite";
}

SqliteDefaultsDatabase::SqliteDefaultsDatabase(std::filesystem::path path, Log log,
                                               DefaultsWaits waits)
    : path_(std::move(path)), log_(std::move(log)), waits_(waits) {
  auto status = openAndLoad();
  if (status == FileStatus::damaged && replaceDamagedFile()) status = openAndLoad();
  if (status == FileStatus::failed) status = loadSnapshot();
  isWritable_ = status == FileStatus::ok || status == FileStatus::absent;
  if (!isWritable_) {
    file_.abandon();
    reportOpening(status);
  }
}

SqliteDefaultsDatabase::~SqliteDefaultsDatabase() { save(waits_.atClosing); }

std::optional<DefaultsValue> SqliteDefaultsDatabase::objectForKey(std::string_view key) {
  const auto found = values_.find(key);
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void SqliteDefaultsDatabase::setObject(const DefaultsValue& value, std::string_view key) {
  values_.insert_or_assign(std::string(key), value);
  unsaved_.emplace(key);
  save(waits_.atWriting);
}

void SqliteDefaultsDatabase::removeObject(std::string_view key) {
  if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
  unsaved_.emplace(key);
  save(waits_.atWriting);
}

std::map<std::string, DefaultsValue> SqliteDefaultsDatabase::dictionaryRepresentation() {
  return {values_.begin(), values_.end()};
}

FileStatus SqliteDefaultsDatabase::openAndLoad() {
  const auto opened = file_.open(path_, FileAccess::existing, waits_.atOpening);
  if (opened != FileStatus::ok && opened != FileStatus::newer) return opened;
  StoredValues stored;
  const auto loaded = file_.load(stored);
  if (loaded == FileStatus::ok) values_ = std::move(stored);
  return opened == FileStatus::newer ? opened : loaded;
}

/// Reads a file in a place where nothing can be written. What was last written to it may be
/// missing, if the program that wrote it did not end properly.
FileStatus SqliteDefaultsDatabase::loadSnapshot() {
  StoredValues stored;
  const bool loaded = file_.open(path_, FileAccess::snapshot, {}) == FileStatus::ok &&
                      file_.load(stored) == FileStatus::ok;
  file_.close();
  if (!loaded) return FileStatus::failed;
  values_ = std::move(stored);
  return FileStatus::ok;
}

void SqliteDefaultsDatabase::save(std::chrono::milliseconds wait) {
  if (!isWritable_ || unsaved_.empty()) return;
  auto status = writeUnsaved(wait);
  if (status == FileStatus::damaged && replaceDamagedFile()) {
    for (const auto& [key, value] : values_) unsaved_.insert(key);
    status = writeUnsaved(wait);
  }
  if (status != FileStatus::ok) {
    reportOnce("cannot be written now; changes are kept and tried again");
  }
}

/// Every key on its own, so that a value too large for the disk does not hold up the others.
FileStatus SqliteDefaultsDatabase::writeUnsaved(std::chrono::milliseconds wait) {
  // A file that was removed or replaced under the program is no longer where the next start looks.
  if (file_.hasMoved()) file_.close();
  if (!file_.isOpen()) {
    const auto opened = file_.open(path_, FileAccess::created, wait);
    if (opened != FileStatus::ok) {
      if (opened != FileStatus::damaged) file_.abandon();
      return opened;
    }
  }
  file_.setWait(wait);
  auto worst = FileStatus::ok;
  for (auto key = unsaved_.begin(); key != unsaved_.end();) {
    const auto written = write(*key);
    if (written == FileStatus::busy || written == FileStatus::damaged) return written;
    if (written != FileStatus::ok) worst = written;
    key = written == FileStatus::ok ? unsaved_.erase(key) : std::next(key);
  }
  return worst;
}

FileStatus SqliteDefaultsDatabase::write(const std::string& key) {
  const auto found = values_.find(key);
  return found == values_.end() ? file_.erase(key) : file_.put(key, found->second);
}

bool SqliteDefaultsDatabase::replaceDamagedFile() {
  // Another process that met the damage may have been first.
  const bool isDone = file_.hasMoved();
  file_.abandon();
  if (isDone) return true;
  const auto target = setAside(path_);
  if (!target) return false;
  log_("Kivra: the settings file " + path_.native() + " is damaged; it is kept as " +
       target->filename().native() + ", and a new one is begun");
  return true;
}

void SqliteDefaultsDatabase::reportOpening(FileStatus status) {
  switch (status) {
    case FileStatus::newer:
      return reportOnce("was made by a newer version; it is left alone, changes last for this run");
    case FileStatus::damaged:
      return reportOnce("is damaged and cannot be renamed; changes last for this run");
    case FileStatus::busy:
      return reportOnce("is locked by another process; changes last for this run");
    default:
      return reportOnce("cannot be read; changes last for this run");
  }
}

void SqliteDefaultsDatabase::reportOnce(std::string_view what) {
  if (std::exchange(hasReported_, true)) return;
  log_("Kivra: the settings file " + path_.native() + ' ' + std::string(what));
}

}  // namespace kivra
