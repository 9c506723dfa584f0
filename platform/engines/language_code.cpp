#include "platform/engines/language_code.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kivra {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 44> codes = {
    {{"af", "afr"}, {"an", "arg"}, {"ar", "ara"}, {"be", "bel"}, {"bg", "bul"}, {"br", "bre"},
     {"bs", "hbs"}, {"ca", "cat"}, {"cy", "cym"}, {"da", "dan"}, {"de", "deu"}, {"en", "eng"},
     {"eo", "epo"}, {"es", "spa"}, {"eu", "eus"}, {"fr", "fra"}, {"gl", "glg"}, {"hi", "hin"},
     {"hr", "hbs"}, {"id", "ind"}, {"is", "isl"}, {"it", "ita"}, {"kk", "kaz"}, {"mk", "mkd"},
     {"ms", "zlm"}, {"mt", "mlt"}, {"nb", "nob"}, {"nl", "nld"}, {"nn", "nno"}, {"no", "nor"},
     {"oc", "oci"}, {"pl", "pol"}, {"pt", "por"}, {"ro", "ron"}, {"ru", "rus"}, {"sc", "srd"},
     {"sl", "slv"}, {"sr", "hbs"}, {"sv", "swe"}, {"tr", "tur"}, {"tt", "tat"}, {"uk", "ukr"},
     {"ur", "urd"}, {"zh", "zho"}}};

char lower(char letter) { return letter >= 'A' && letter <= 'Z' ? char(letter + 32) : letter; }
char upper(char letter) { return letter >= 'a' && letter <= 'z' ? char(letter - 32) : letter; }

}  // namespace

std::string baseLanguage(std::string_view identifier) {
  std::string base(identifier.substr(0, identifier.find_first_of("-_")));
  std::transform(base.begin(), base.end(), base.begin(), lower);
  return base;
}

std::string regionOf(std::string_view identifier) {
  const auto separator = identifier.find_last_of("-_");
  if (separator == std::string_view::npos) return "";
  std::string region(identifier.substr(separator + 1));
  std::transform(region.begin(), region.end(), region.begin(), upper);
  return region.size() == 2 ? region : "";
}

std::string threeLetterLanguage(std::string_view identifier) {
  auto base = baseLanguage(identifier);
  const auto* const found = std::find_if(codes.begin(), codes.end(),
                                         [&](const auto& entry) { return entry.first == base; });
  return found == codes.end() ? base : std::string(found->second);
}

}  // namespace kivra
