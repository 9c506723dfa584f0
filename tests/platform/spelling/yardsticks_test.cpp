#include "yardsticks.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace kivra::quality {
namespace {

namespace fs = std::filesystem;

/// A folder with a program called aspell that finds nothing but "helo" wrong, first in PATH.
class Yardsticks : public testing::Test {
 protected:
  Yardsticks() {
    fs::create_directories(folder_);
    std::ofstream(folder_ / "aspell") << "#!/bin/sh\necho banner\nwhile read -r word; do\n"
                                         "  case $word in\n"
                                         "    ^helo) echo '& helo 2 1: hello, help' ;;\n"
                                         "    *) echo '*' ;;\n"
                                         "  esac\n  echo\ndone\n";
    fs::permissions(folder_ / "aspell", fs::perms::owner_all);
    setenv("PATH", (folder_.string() + ":" + path_).c_str(), 1);
  }
  ~Yardsticks() override {
    setenv("PATH", path_.c_str(), 1);
    fs::remove_all(folder_);
  }

  std::string path_ = std::getenv("PATH");
  fs::path folder_ =
      fs::path(testing::TempDir()) / ("kivra-yardsticks-" + std::to_string(getpid()));
};

TEST_F(Yardsticks, AspellAnswersAboutWordsThatSeveralListsHave) {
  const auto oracle = aspellYardstick({{"helo", false}, {"hello", false}, {"helo", false}});
  ASSERT_TRUE(oracle);
  EXPECT_FALSE(oracle->isValid("helo", false));
  EXPECT_EQ(oracle->correction("helo", false), "hello");
  EXPECT_TRUE(oracle->isValid("hello", false));
}

TEST_F(Yardsticks, AspellThatBreaksOffIsNone) {
  std::ofstream(folder_ / "aspell") << "#!/bin/sh\necho banner\n";
  EXPECT_FALSE(aspellYardstick({{"helo", false}}));
}

}  // namespace
}  // namespace kivra::quality
