// Plays every scenario under this folder. A scenario is a script of kivra-desk, a line "---" and
// the output wanted, one JSON value a line: an object matches one that has at least its members,
// "..." matches any number of lines, and of elements in an array.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "script.h"

namespace kivra::desk {
namespace {

using Json = nlohmann::json;
using Lines = std::vector<std::string>;

struct Scenario {
  std::string script;
  Lines wanted;
};

Scenario read(const std::filesystem::path& path) {
  Scenario scenario;
  std::ifstream file(path);
  std::string line;
  bool isScript = true;
  while (std::getline(file, line)) {
    if (line == "---") {
      isScript = false;
    } else if (isScript) {
      scenario.script += line + "\n";
    } else if (!line.empty()) {
      scenario.wanted.push_back(line);
    }
  }
  return scenario;
}

bool matches(const Json& wanted, const Json& actual);

bool elementsMatch(const Json& wanted, std::size_t w, const Json& actual, std::size_t a) {
  if (w == wanted.size()) return a == actual.size();
  if (wanted[w] != "...") {
    return a < actual.size() && matches(wanted[w], actual[a]) &&
           elementsMatch(wanted, w + 1, actual, a + 1);
  }
  for (auto rest = a; rest <= actual.size(); ++rest) {
    if (elementsMatch(wanted, w + 1, actual, rest)) return true;
  }
  return false;
}

bool matches(const Json& wanted, const Json& actual) {
  if (wanted.is_array()) return actual.is_array() && elementsMatch(wanted, 0, actual, 0);
  if (!wanted.is_object()) return wanted == actual;
  return actual.is_object() && std::ranges::all_of(wanted.items(), [&](const auto& member) {
           return actual.contains(member.key()) && matches(member.value(), actual[member.key()]);
         });
}

/// Compares line by line and remembers how far the expectations were met.
class Comparison {
 public:
  Comparison(const Lines& wanted, const Lines& actual) : wanted_(wanted), actual_(actual) {}

  bool holds() { return holdsFrom(0, 0); }

  std::string failure() const {
    std::ostringstream shown;
    shown << "wanted: " << (furthest_ < wanted_.size() ? wanted_[furthest_] : "no more") << '\n';
    for (auto i = reached_; i < std::min(reached_ + 40, actual_.size()); ++i) {
      shown << "  came: " << actual_[i] << '\n';
    }
    return shown.str();
  }

 private:
  bool holdsFrom(std::size_t w, std::size_t a) {
    if (w > furthest_) {
      furthest_ = w;
      reached_ = a;
    }
    if (w == wanted_.size()) return a == actual_.size();
    if (wanted_[w] != "...") {
      return a < actual_.size() && matches(Json::parse(wanted_[w]), Json::parse(actual_[a])) &&
             holdsFrom(w + 1, a + 1);
    }
    for (auto rest = a; rest <= actual_.size(); ++rest) {
      if (holdsFrom(w + 1, rest)) return true;
    }
    return false;
  }

  const Lines& wanted_;
  const Lines& actual_;
  std::size_t furthest_ = 0;
  std::size_t reached_ = 0;
};

class ScenarioTest : public testing::Test {
 public:
  explicit ScenarioTest(std::filesystem::path path) : path_(std::move(path)) {}

  void TestBody() override {
    const auto scenario = read(path_);
    ASSERT_FALSE(scenario.wanted.empty()) << "a scenario without expectations cannot fail";
    std::istringstream input(scenario.script);
    std::ostringstream output;
    playScript(input, output);
    Lines actual;
    std::istringstream written(output.str());
    for (std::string line; std::getline(written, line);) actual.push_back(line);
    Comparison comparison(scenario.wanted, actual);
    EXPECT_TRUE(comparison.holds()) << comparison.failure();
  }

 private:
  std::filesystem::path path_;
};

void registerScenarios() {
  std::vector<std::filesystem::path> paths;
  const std::filesystem::path folder(KIVRA_SCENARIOS);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.path().extension() == ".jsonl") paths.push_back(entry.path());
  }
  std::ranges::sort(paths);
  for (const auto& path : paths) {
    auto name = std::filesystem::relative(path, folder).replace_extension().string();
    std::ranges::replace_if(
        name, [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    testing::RegisterTest("Scenario", name.c_str(), nullptr, nullptr, path.c_str(), 1,
                          [path]() -> ScenarioTest* { return new ScenarioTest(path); });
  }
}

}  // namespace
}  // namespace kivra::desk

int main(int count, char** values) {
  testing::InitGoogleTest(&count, values);
  kivra::desk::registerScenarios();
  return RUN_ALL_TESTS();
}
