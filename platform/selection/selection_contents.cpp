#include "platform/selection/selection_contents.h"

#include <algorithm>
#include <array>

namespace kivra {

namespace {

/// Questions about the selection, requests to do something with it, and objects of the server.
constexpr std::array<std::string_view, 22> notData = {
    "TARGETS",           "MULTIPLE",      "TIMESTAMP",
    "SAVE_TARGETS",      "DELETE",        "INSERT_SELECTION",
    "INSERT_PROPERTY",   "PIXMAP",        "BITMAP",
    "DRAWABLE",          "WINDOW",        "COLORMAP",
    "FOREGROUND",        "BACKGROUND",    "LENGTH",
    "LIST_LENGTH",       "CLIENT_WINDOW", "CHARACTER_POSITION",
    "OWNER_OS",          "TEXT",          "XmTRANSFER_SUCCESS",
    "XmTRANSFER_FAILURE"};

/// All names of Motif's but one ask its programs to do something.
constexpr std::string_view motif = "_MOTIF_";
constexpr std::string_view motifText = "_MOTIF_COMPOUND_STRING";

/// Bytes of UTF-8 as Latin-1; "?" for what it lacks.
std::string latin1OfUtf8(std::string_view text) {
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    const auto isContinuation = (byte & 0xC0U) == 0x80U;
    if (byte < 0x80U) {
      result += text[at];
    } else if ((byte == 0xC2U || byte == 0xC3U) && at + 1 < text.size()) {
      const auto next = static_cast<unsigned char>(text[++at]);
      result += static_cast<char>(((byte & 0x03U) << 6U) | (next & 0x3FU));
    } else if (!isContinuation) {
      result += '?';
    }
  }
  return result;
}

/// Alternatives of one picture cost its owner the most; one that everybody reads comes first.
int cost(const std::string& target) {
  if (target == "image/png") return 1;
  return isPicture(target) ? 2 : 0;
}

}  // namespace

std::string targetOfType(std::string_view type) {
  return type == pasteboardTypeString ? target_names::utf8 : std::string(type);
}

std::string typeOfTarget(std::string_view target) {
  return target == target_names::utf8 ? pasteboardTypeString : std::string(target);
}

SelectionContents contentsOf(const std::vector<PasteboardItem>& items) {
  SelectionContents contents;
  for (const auto& item : items) {
    for (const auto& [type, data] : item) {
      contents.try_emplace(targetOfType(type), std::make_shared<const std::string>(data));
    }
  }
  const auto text = contents.find(target_names::utf8);
  if (text == contents.end()) return contents;
  const auto bytes = text->second;
  for (const auto* name : {target_names::mimeUtf8, target_names::mimeText, target_names::anyText}) {
    contents.try_emplace(name, bytes);
  }
  contents.try_emplace(target_names::latin1,
                       std::make_shared<const std::string>(latin1OfUtf8(*bytes)));
  return contents;
}

bool isData(std::string_view target) {
  if (target.starts_with(motif)) return target == motifText;
  return !target.empty() && std::find(notData.begin(), notData.end(), target) == notData.end();
}

bool isPicture(std::string_view target) { return target.starts_with("image/"); }

void sortByWorth(std::vector<std::string>& targets) {
  std::stable_sort(targets.begin(), targets.end(),
                   [](const auto& a, const auto& b) { return cost(a) < cost(b); });
}

std::string utf8OfLatin1(std::string_view text) {
  std::string result;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x80U) {
      result += character;
    } else {
      result += static_cast<char>(0xC0U | (byte >> 6U));
      result += static_cast<char>(0x80U | (byte & 0x3FU));
    }
  }
  return result;
}

}  // namespace kivra
