#pragma once

#include <string>

namespace kivra::control {

/// The bytes of a file, or of standard input for "-". Throws Failure.
std::string readFile(const std::string& file);

/// Puts the file in the place of one of that name, whole or not at all. Throws Failure.
void writeFile(const std::string& file, const std::string& bytes);

}  // namespace kivra::control
