#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <span>
#include <string>

#include "soak.h"

namespace {

using kivra::soak::Counts;
using kivra::soak::ProcessFigures;
using kivra::soak::Soak;

constexpr auto usage =
    "Usage: soak [MINUTES] [--server xorg|xvnc] [--pace MS] [--seed NUMBER] [--no-kills] [--kills "
    "TIMES]\n";

struct Arguments {
  double minutes = 2;
  int kills = 0;  ///< nothing else, each so often
  Soak::Options soak{.seed = std::random_device()()};
};

Arguments parse(std::span<char*> arguments) {
  Arguments result;
  const auto value = [&](std::size_t& i) -> std::string { return arguments.subspan(++i).front(); };
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string name = arguments[i];
    const auto hasValue = i + 1 < arguments.size();
    if (name == "--no-kills") {
      result.soak.kills = false;
    } else if (name == "--server" && hasValue) {
      result.soak.server =
          value(i) == "xvnc" ? kivra::e2e::XServer::Kind::xvnc : kivra::e2e::XServer::Kind::xorg;
    } else if (name == "--pace" && hasValue) {
      result.soak.pace = std::chrono::milliseconds(std::stoi(value(i)));
    } else if (name == "--seed" && hasValue) {
      result.soak.seed = static_cast<unsigned int>(std::stoul(value(i)));
    } else if (name == "--kills" && hasValue) {
      result.kills = std::stoi(value(i));
    } else {
      result.minutes = std::stod(name);
    }
  }
  return result;
}

void print(const Counts& counts, const ProcessFigures& first, const ProcessFigures& last) {
  std::cout << "words " << counts.words << " | corrections " << counts.corrections
            << " | letters off " << counts.lettersOff << " | keys or locks left " << counts.keysHeld
            << " | longest silence " << counts.longestSilence.count() << " ms | memory "
            << first.memory / 1024 << " -> " << last.memory / 1024 << " MB | file descriptors "
            << first.descriptors << " -> " << last.descriptors << " | processes " << first.processes
            << " -> " << last.processes << "\nkills " << counts.kills << " | cut words "
            << counts.cutWords << " | left as typed " << counts.wholeWords << " | longest silence "
            << counts.longestSilenceAtKills.count() << " ms | processes left behind "
            << counts.leftBehind << std::endl;
}

}  // namespace

int main(int count, char** values) {
  try {
    const auto arguments = parse(std::span(values, static_cast<std::size_t>(count)).subspan(1));
    std::cout << "seed " << arguments.soak.seed << std::endl;
    Soak soak(arguments.soak, std::cout);
    const auto first = soak.processes();
    for (int i = 0; i < arguments.kills; ++i) {
      soak.killInAllWays();
      std::cout << "kills " << soak.counts().kills << ", letters off " << soak.counts().lettersOff
                << std::endl;  // so that a run that is cut short has told something
    }
    const auto end = std::chrono::steady_clock::now() +
                     std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                         std::chrono::duration<double, std::ratio<60>>(
                             arguments.kills > 0 ? 0 : arguments.minutes));
    while (std::chrono::steady_clock::now() < end) soak.step();
    print(soak.counts(), first, soak.processes());
    const auto& counts = soak.counts();
    const auto isClean = counts.lettersOff + counts.keysHeld + counts.leftBehind == 0 &&
                         counts.longestSilenceAtKills < std::chrono::seconds(1);
    return isClean ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const std::invalid_argument&) {
    std::cerr << usage;
    return 2;
  } catch (const std::exception& error) {
    std::cerr << "soak: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
}
