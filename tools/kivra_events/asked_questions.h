#pragma once

#include <string>

#include "layout/questions.h"

namespace kivra::events {

/// A line for a question that the decision at a word's end asked: its name, how many letters it was
/// asked about, the answer. What was typed is not in it.
std::string questionLine(const Answer& answer);

}  // namespace kivra::events
