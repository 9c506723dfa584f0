#pragma once

#include <string>
#include <vector>

#include "arguments.h"
#include "control.h"
#include "support/json.h"

namespace kivra::control {

// Each carries out the command of its name; the first word of the arguments is that name. Throws
// Failure.
std::string learned(const Environment& environment, const Arguments& arguments);
std::string skip(const Environment& environment, const Arguments& arguments);
/// A reply, since an import that is done may have something to say as well.
Reply dictionary(const Environment& environment, const Arguments& arguments,
                 const std::string& input);

/// Throws Failure when what was changed is not on disk.
void requireSaved(const Environment& environment);

/// A line for each, or all of them as JSON.
std::string listed(const std::vector<std::string>& lines, bool asJson);

inline std::string jsonLine(const json::Value& value) { return json::encode(value) + '\n'; }

}  // namespace kivra::control
