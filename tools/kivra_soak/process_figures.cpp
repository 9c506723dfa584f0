#include "process_figures.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace kivra::soak {

namespace {

std::string contents(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// By its file: the guard's process names are others.
bool isKivra(const std::filesystem::path& process) {
  std::error_code error;
  const auto program = std::filesystem::read_symlink(process / "exe", error).filename().string();
  return program == "kivra" || program == "kivra-keyboard-guard";
}

int descriptorsOf(const std::filesystem::path& process) {
  std::error_code error;
  const std::filesystem::directory_iterator files(process / "fd", error);
  return error ? 0 : static_cast<int>(std::distance(begin(files), end(files)));
}

long memoryOf(const std::filesystem::path& process) {
  std::ifstream file(process / "smaps_rollup");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("Pss:")) return std::stol(line.substr(4));
  }
  return 0;
}

}  // namespace

std::vector<pid_t> processesOn(const std::string& display) {
  const auto variable = std::string(1, '\0') + "DISPLAY=" + display + '\0';
  std::vector<pid_t> result;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const auto name = entry.path().filename().string();
    if (!std::ranges::all_of(name, [](unsigned char c) { return std::isdigit(c) != 0; })) continue;
    if (!isKivra(entry.path())) continue;
    if ((std::string(1, '\0') + contents(entry.path() / "environ")).find(variable) ==
        std::string::npos) {
      continue;
    }
    result.push_back(std::stoi(name));
  }
  return result;
}

ProcessFigures figuresOf(const std::vector<pid_t>& processes) {
  ProcessFigures figures;
  for (const auto process : processes) {
    const auto folder = std::filesystem::path("/proc") / std::to_string(process);
    if (contents(folder / "environ").empty()) continue;
    ++figures.processes;
    figures.descriptors += descriptorsOf(folder);
    figures.memory += memoryOf(folder);
  }
  return figures;
}

}  // namespace kivra::soak
