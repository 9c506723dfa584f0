#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "platform/guard/guard_link.h"
#include "platform/io/run_program.h"

namespace kivra {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

/// A file that a library has open, so that every program that is started would inherit it.
class InheritedFilesTest : public testing::Test {
 protected:
  InheritedFilesTest() {
    const auto opened = ::open(path("dictionary").c_str(), O_CREAT | O_RDONLY, 0600);
    // Not a number that a program's own files get.
    fd_ = ::fcntl(opened, F_DUPFD, 100);
    ::close(opened);
  }
  ~InheritedFilesTest() override {
    ::close(fd_);
    std::error_code error;
    fs::remove_all(folder_, error);
  }

  fs::path path(const std::string& name) const { return folder_ / name; }

 private:
  static fs::path madeFolder() {
    std::string pattern = fs::temp_directory_path() / "kivra-files-XXXXXX";
    return ::mkdtemp(pattern.data());
  }

  fs::path folder_ = madeFolder();
  int fd_ = -1;
};

TEST_F(InheritedFilesTest, AProgramHasItsInputAndOutputAlone) {
  const auto files =
      outputOfProgram({.command = {"ls", "-l", "/proc/self/fd"}, .input = "", .timeout = 10s}, {});
  ASSERT_TRUE(files);
  EXPECT_NE(files->find("pipe:"), std::string::npos) << *files;
  EXPECT_EQ(files->find("dictionary"), std::string::npos) << *files;
}

TEST_F(InheritedFilesTest, TheGuardHasItsSocketAlone) {
  const auto script = path("guard");
  const auto draft = path("draft").string();
  const auto list = path("list");
  std::ofstream(script) << "#!/bin/sh\nls -l /proc/self/fd >" << draft << "\nmv " << draft << " "
                        << list.string() << "\n";
  fs::permissions(script, fs::perms::owner_all);
  guard::GuardLink link(script);
  ASSERT_TRUE(link.start());
  const auto deadline = std::chrono::steady_clock::now() + 20s;
  while (!fs::exists(list) && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(5ms);
  }
  std::ifstream stream(list);
  const std::string files{std::istreambuf_iterator<char>(stream), {}};
  EXPECT_NE(files.find("3 -> socket:"), std::string::npos) << files;
  EXPECT_EQ(files.find("dictionary"), std::string::npos) << files;
}

}  // namespace
}  // namespace kivra
