#include "platform/spelling/dictionary_files.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <iterator>
#include <system_error>

namespace kivra {
namespace {

constexpr std::string_view preferred[] = {"ru_RU", "en_US"};
// No dictionary in use comes near; reading a runaway file into memory must not take the machine
// down.
constexpr std::uintmax_t largestFile = 64U << 20U;

int rankOf(std::string_view name, std::string_view code) {
  if (name == code) return 0;
  return std::find(std::begin(preferred), std::end(preferred), name) != std::end(preferred) ? 1 : 2;
}

bool answersFor(std::string_view name, std::string_view code) {
  if (!name.starts_with(code)) return false;
  return name.size() == code.size() || name[code.size()] == '_' || name[code.size()] == '-';
}

std::string encodingOf(std::string_view aff) {
  std::size_t pos = 0;
  while (pos < aff.size()) {
    const std::size_t end = std::min(aff.find('\n', pos), aff.size());
    std::string_view line = aff.substr(pos, end - pos);
    pos = end + 1;
    if (!line.starts_with("SET") || line.size() < 5 || (line[3] != ' ' && line[3] != '\t'))
      continue;
    line.remove_prefix(std::min(line.find_first_not_of(" \t", 3), line.size()));
    std::string name(line.substr(0, std::min(line.find_first_of(" \t\r"), line.size())));
    // Dictionaries write the names of these encodings without the hyphen that iconv wants.
    if (name.starts_with("ISO8859")) name.insert(3, "-");
    if (name.starts_with("microsoft-cp")) name = "CP" + name.substr(12);
    return name;
  }
  return {};
}

// Hunspell sizes its table by the first line, and a file cut short has fewer lines than it says.
bool countAgrees(std::string_view dic) {
  std::size_t count = 0;
  const auto [end, error] = std::from_chars(dic.data(), dic.data() + dic.size(), count);
  if (error != std::errc() || count == 0) return false;
  const auto lines = static_cast<std::size_t>(std::count(dic.begin(), dic.end(), '\n'));
  return lines + lines / 4 + 2 >= count && count + count / 2 + 2 >= lines / 2;
}

void dropByteOrderMark(std::string& text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
}

}  // namespace

std::vector<DictionaryFiles> findDictionaries(const std::vector<std::filesystem::path>& directories,
                                              std::string_view code) {
  std::vector<DictionaryFiles> out;
  for (const auto& directory : directories) {
    std::vector<DictionaryFiles> here;
    std::error_code error;
    for (std::filesystem::directory_iterator it(directory, error), end; !error && it != end;
         it.increment(error)) {
      const std::filesystem::path& dic = it->path();
      const std::string name = dic.stem().string();
      if (dic.extension() != ".dic" || !answersFor(name, code)) continue;
      here.push_back({name, directory / (name + ".aff"), dic});
    }
    std::sort(here.begin(), here.end(), [code](const auto& a, const auto& b) {
      return std::pair(rankOf(a.name, code), a.name) < std::pair(rankOf(b.name, code), b.name);
    });
    out.insert(out.end(), here.begin(), here.end());
  }
  return out;
}

std::optional<DictionaryText> readDictionary(const DictionaryFiles& files) {
  auto aff = readWholeFile(files.aff);
  auto dic = readWholeFile(files.dic);
  if (!aff || !dic) return std::nullopt;
  dropByteOrderMark(*aff);
  dropByteOrderMark(*dic);
  DictionaryText text;
  text.encoding = encodingOf(*aff);
  if (text.encoding.empty() || !countAgrees(*dic)) return std::nullopt;
  if (aff->find('\0') != std::string::npos || dic->find('\0') != std::string::npos) {
    return std::nullopt;
  }
  auto affText = convertEncoding(*aff, text.encoding, "UTF-8");
  auto dicText = convertEncoding(*dic, text.encoding, "UTF-8");
  if (!affText || !dicText) return std::nullopt;
  text.aff = *std::move(affText);
  text.dic = *std::move(dicText);
  return text;
}

std::optional<std::string> readWholeFile(const std::filesystem::path& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return std::nullopt;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  if (error || size > largestFile) return std::nullopt;
  std::ifstream in(file, std::ios::binary);
  std::string text(static_cast<std::size_t>(size), '\0');
  in.read(text.data(), static_cast<std::streamsize>(text.size()));
  if (!in) return std::nullopt;
  return text;
}

std::optional<std::string> convertEncoding(std::string_view text, const std::string& from,
                                           const std::string& to) {
  const iconv_t converter = iconv_open(to.c_str(), from.c_str());
  // NOLINTNEXTLINE(performance-no-int-to-ptr): iconv's own way to say no
  if (converter == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
  std::string out;
  std::string in(text);
  char* next = in.data();
  std::size_t left = in.size();
  std::array<char, 4096> buffer;
  bool good = true;
  while (left > 0 && good) {
    char* end = buffer.data();
    std::size_t room = buffer.size();
    const std::size_t result = iconv(converter, &next, &left, &end, &room);
    out.append(buffer.data(), buffer.size() - room);
    good = result != static_cast<std::size_t>(-1) || errno == E2BIG;
  }
  iconv_close(converter);
  if (!good) return std::nullopt;
  return out;
}

}  // namespace kivra
