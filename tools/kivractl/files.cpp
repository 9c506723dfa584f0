#include "files.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "arguments.h"

namespace kivra::control {

namespace {

[[noreturn]] void fail(const std::string& what, const std::string& file) {
  throw Failure{Reply::failed, "cannot " + what + " " + file + ": " + std::strerror(errno)};
}

std::string all(std::istream& stream) {
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace

std::string readFile(const std::string& file) {
  if (file == "-") return all(std::cin);
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  stream.peek();  // a directory can be opened, but not read
  if (!stream.is_open() || stream.bad()) fail("read", file);
  stream.clear();
  auto bytes = all(stream);
  if (stream.bad()) fail("read", file);
  return bytes;
}

void writeFile(const std::string& file, const std::string& bytes) {
  const auto draft = file + ".new";
  errno = 0;
  std::ofstream stream(draft, std::ios::binary | std::ios::trunc);
  stream << bytes;
  stream.close();
  std::error_code error;
  if (stream) std::filesystem::rename(draft, file, error);
  if (stream && !error) return;
  if (error) errno = error.value();
  const auto reason = errno;
  std::filesystem::remove(draft, error);
  errno = reason;
  fail("write", file);
}

}  // namespace kivra::control
