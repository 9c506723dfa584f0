#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/pasteboard.h"

namespace kivra {

/// What a selection holds: bytes by target name ("UTF8_STRING", "image/png"). Wayland's MIME types
/// are such names; those of X come along with what its programs offer.
using SelectionContents = std::map<std::string, std::shared_ptr<const std::string>>;

namespace target_names {
inline constexpr const char* utf8 = "UTF8_STRING";
inline constexpr const char* mimeUtf8 = "text/plain;charset=utf-8";
inline constexpr const char* mimeText = "text/plain";
inline constexpr const char* latin1 = "STRING";
inline constexpr const char* anyText = "TEXT";
}  // namespace target_names

/// The target that a pasteboard type is offered as, and the type that a target is read as.
std::string targetOfType(std::string_view type);
std::string typeOfTarget(std::string_view target);

/// The targets of all items together. A selection is one item: where two items have the same type,
/// the earlier one counts. Plain text is offered under its other names too.
SelectionContents contentsOf(const std::vector<PasteboardItem>& items);

/// Reading the target has no effect on the owner and yields bytes that mean something elsewhere.
bool isData(std::string_view target);

bool isPicture(std::string_view target);

/// Targets in the order in which they are worth reading when time is short.
void sortByWorth(std::vector<std::string>& targets);

std::string utf8OfLatin1(std::string_view text);

}  // namespace kivra
