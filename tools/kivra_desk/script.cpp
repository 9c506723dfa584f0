#include "script.h"

#include <string>

#include "script_player.h"

namespace kivra::desk {

namespace {

bool isOperation(const std::string& line) {
  const auto start = line.find_first_not_of(" \t\r");
  return start != std::string::npos && line[start] != '#';
}

void write(std::ostream& output, const embedded::Json& value) {
  output << value.dump(-1, ' ', false, embedded::Json::error_handler_t::replace) << '\n';
}

}  // namespace

int playScript(std::istream& input, std::ostream& output) {
  ScriptPlayer player([&](const embedded::Json& effect) { write(output, effect); });
  std::string line;
  for (int number = 1; !player.isOver() && std::getline(input, line); ++number) {
    if (!isOperation(line)) continue;
    try {
      player.play(Operation::parsed(line));
    } catch (const ScriptError& error) {
      write(output, {{"error", error.what()}, {"line", number}});
      output.flush();
      return 2;
    }
    output.flush();
  }
  return 0;
}

}  // namespace kivra::desk
