#pragma once

#include <string>
#include <string_view>

namespace kivra {

/// The offline translator's identifier of a language of the list: "EN-US" gives "en-US", "RU" gives
/// "ru", "ZH" gives "zh-Hans".
std::string translationLanguage(std::string_view code);

}  // namespace kivra
