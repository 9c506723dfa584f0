#include "script.h"

#include <gtest/gtest.h>

#include <sstream>

namespace kivra::desk {
namespace {

struct Played {
  int status;
  std::string output;
};

Played play(const std::string& script) {
  std::istringstream input(script);
  std::ostringstream output;
  const auto status = playScript(input, output);
  return {status, output.str()};
}

TEST(Script, EndsAtTheFirstLineThatIsNotValid) {
  for (const auto* line : {
           "{",
           "[]",
           "7",
           R"({"op":7})",
           R"({"op":"fly"})",
           R"({"text":"a"})",
           R"({"op":"type"})",
           R"({"op":"type","text":1})",
           R"({"op":"key","code":65536})",
           R"({"op":"key","code":-1})",
           R"({"op":"key","code":1.5})",
           R"({"op":"key","code":1,"flags":"x"})",
           R"({"op":"modifiers","code":56})",
           R"({"op":"mouse","button":"middle"})",
           R"({"op":"wait","seconds":-1})",
           R"({"op":"wait","seconds":"1"})",
           R"({"op":"source","id":"fr"})",
           R"({"op":"sources","list":[1]})",
           R"({"op":"sources","list":[{"id":"x","languages":["en"],"layout":"nowhere"}]})",
           R"({"op":"sources","list":[{"id":"x","languages":["en"],"layout":"us,ru"}]})",
           R"({"op":"focus","text":"ab","selection":[0,3]})",
           R"({"op":"select","range":[1,2]})",
           R"({"op":"select","range":[0]})",
           R"({"op":"default","key":"k"})",
           R"({"op":"default","key":"k","value":[1]})",
           R"({"op":"set","property":"speed","value":1})",
           R"({"op":"set","property":"isEnabled","value":"yes"})",
           R"({"op":"set","property":"correctHotkey","value":{"keyCode":70000,"modifiers":0}})",
           R"({"op":"set","property":"correctCombo","value":["hyper"]})",
           R"({"op":"set","property":"translationEngine","value":"DeepL"})",
           R"({"op":"dictionary","language":"de","words":[]})",
           R"({"op":"dictionary","language":"ru","words":[],"corrections":{"a":1}})",
           R"({"op":"permission","name":"camera","granted":true})",
           R"({"op":"instance","pid":"1"})",
           R"({"op":"tap","disabled":"boredom"})",
           R"({"op":"tap"})",
           R"({"op":"choose","item":"Открыть"})",
           R"({"op":"choose","item":"Разрешения выданы ✓"})",
           R"({"op":"choose"})",
           R"({"op":"window","name":"about"})",
           R"({"op":"press","window":"settings","text":"Общие"})",
           R"({"op":"close","window":"permissions"})",
       }) {
    const auto [status, output] = play("# a comment\n\n{\"op\":\"key\",\"code\":0}\n" +
                                       std::string(line) + "\n{\"op\":\"report\"}\n");
    EXPECT_EQ(status, 2) << line;
    EXPECT_TRUE(output.starts_with("{\"passed\":0}\n{\"error\":")) << line << "\n" << output;
    EXPECT_TRUE(output.ends_with("\"line\":4}\n")) << line << "\n" << output;
  }
}

TEST(Script, TakesALastLineWithoutALineBreak) {
  const auto [status, output] = play(R"({"op":"type","text":"a"})");
  EXPECT_EQ(status, 0);
  EXPECT_EQ(output, "{\"passed\":0}\n");
}

}  // namespace
}  // namespace kivra::desk
