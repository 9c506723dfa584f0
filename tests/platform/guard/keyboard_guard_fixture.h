#pragma once

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "platform/guard/guard_bench.h"

namespace kivra::guard {

inline constexpr std::uint16_t letterKey = KEY_G;

/// The code of a key that means nothing to the program.
inline constexpr std::uint16_t noKeyOfTheProgram = 0xFFFF;

class KeyboardGuardTest : public testing::Test {
 protected:
  void SetUp() override { bench.enable(spaces()); }

  /// Types a word and Space, which waits then; answers the number of its event.
  std::uint32_t typeWord(std::string_view letters) {
    bench.type(letters);
    bench.press(KEY_SPACE);
    const auto reports = bench.reports();
    EXPECT_TRUE(!reports.empty() && reports.back().awaitsVerdict != 0);
    return reports.empty() ? 0 : reports.back().number;
  }

  /// The word in the other layout.
  static Posted correction(std::string_view letters, std::uint32_t pause = 0) {
    Posted posted;
    posted.erase(letters.size());
    if (pause > 0) posted.pause(pause);
    return posted.group(1).letters(letters).key(KEY_SPACE);
  }

  std::vector<ReportKind> kinds() {
    std::vector<ReportKind> kinds;
    for (const auto& report : bench.reports()) kinds.push_back(report.kind);
    return kinds;
  }

  GuardBench bench;
};

}  // namespace kivra::guard
