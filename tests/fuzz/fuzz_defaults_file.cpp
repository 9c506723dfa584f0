// Opens a settings file made of the fuzzer's bytes: whatever they are, the program gets a database
// that works for its run, and finds its values again if they were saved.

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/defaults/sqlite_defaults_database.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

const std::filesystem::path& directory() {
  static const std::filesystem::path path = [] {
    std::string pattern = "/tmp/kivra-fuzz-XXXXXX";
    return mkdtemp(pattern.data()) == nullptr ? "" : pattern;
  }();
  return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using kivra::SqliteDefaultsDatabase;
  const auto ignore = [](std::string_view) {};
  const auto path = directory() / "run" / "defaults.sqlite";
  std::filesystem::remove_all(path.parent_path());
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  bool isSaved = false;
  {
    SqliteDefaultsDatabase database(path, ignore);
    database.dictionaryRepresentation();
    database.setObject(std::string("value"), "key");
    require(database.objectForKey("key") == kivra::DefaultsValue(std::string("value")));
    isSaved = database.isSaved();
  }
  if (isSaved) {
    SqliteDefaultsDatabase database(path, ignore);
    require(database.objectForKey("key") == kivra::DefaultsValue(std::string("value")));
  }
  return 0;
}
