#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kivra {

/// Calls `word` with each word of the list in the data of a tesseract-ocr language (the bytes of a
/// .traineddata file), in each case in which the list has it; with none when the data are damaged.
void forEachWebWord(std::string_view data, const std::function<void(const std::u32string&)>& word);

}  // namespace kivra
