#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/defaults_database.h"

namespace kivra {

/// A value as it stands in a list of values: 1, "text", an array over several lines, <68656c6c6f>.
std::string valueText(const DefaultsValue& value);

/// The text between double quotes, with what would break the line or the quotes escaped.
std::string quotedText(std::string_view text);

std::optional<bool> parsedBool(std::string_view text);

/// The bytes that pairs of hexadecimal digits stand for.
std::optional<Data> parsedData(std::string_view hex);

}  // namespace kivra
