#include "separated_values.h"

#include <optional>
#include <utility>
#include <vector>

#include "lines.h"
#include "support/text.h"

namespace kivra::control {

namespace {

constexpr const char* notText = "not UTF-8 text";

/// The field with what its escapes stand for; nothing when a backslash stands before another
/// character.
std::optional<std::string> unescaped(std::string_view field) {
  std::string text;
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] != '\\') {
      text += field[i];
    } else if (++i < field.size() && field[i] == 't') {
      text += '\t';
    } else if (i < field.size() && field[i] == 'n') {
      text += '\n';
    } else if (i < field.size() && field[i] == '\\') {
      text += '\\';
    } else {
      return std::nullopt;
    }
  }
  return text;
}

std::string escaped(std::string_view text) {
  std::string field;
  for (const char c : text) {
    if (c == '\t') {
      field += "\\t";
    } else if (c == '\n') {
      field += "\\n";
    } else if (c == '\\') {
      field += "\\\\";
    } else {
      field += c;
    }
  }
  return field;
}

void readTabLine(const Line& line, DictionaryText& dictionary) {
  if (text::trimmed(line.text).empty()) return;
  const auto tab = line.text.find('\t');
  if (!text::isValidUtf8(line.text)) {
    dictionary.bad.push_back({line.number, notText});
  } else if (tab == std::string_view::npos || line.text.find('\t', tab + 1) != std::string::npos) {
    dictionary.bad.push_back({line.number, "wanted: pattern, one tab, replacement"});
  } else {
    const auto pattern = unescaped(line.text.substr(0, tab));
    const auto replacement = unescaped(line.text.substr(tab + 1));
    if (pattern && replacement) {
      dictionary.pairs.push_back({line.number, *pattern, *replacement});
    } else {
      dictionary.bad.push_back({line.number, R"(a backslash must stand before t, n or \)"});
    }
  }
}

/// Reads the records of a text one after another.
class CommaReader {
 public:
  explicit CommaReader(std::string_view text) : text_(text) {}

  bool isAtEnd() const { return text_.empty(); }

  void readRecord(DictionaryText& dictionary) {
    const auto line = line_;
    std::vector<std::string> fields;
    std::string wrong;
    do {
      fields.push_back(readField(wrong));
    } while (take(','));
    if (wrong.empty() && !isAtEnd() && !takeLineBreak()) wrong = "text behind a closing quote";
    if (!wrong.empty()) skipLine();
    if (wrong.empty() && fields.size() == 1 && text::trimmed(fields[0]).empty()) return;
    if (wrong.empty() && fields.size() != 2) wrong = "wanted: pattern,replacement";
    if (wrong.empty() && !(text::isValidUtf8(fields[0]) && text::isValidUtf8(fields[1]))) {
      wrong = notText;
    }
    if (wrong.empty()) {
      dictionary.pairs.push_back({line, std::move(fields[0]), std::move(fields[1])});
    } else {
      dictionary.bad.push_back({line, wrong});
    }
  }

 private:
  std::string readField(std::string& wrong) {
    if (!take('"')) {
      const auto end = text_.find_first_of(",\r\n");
      return std::string(takeFront(end == std::string_view::npos ? text_.size() : end));
    }
    std::string field;
    while (!isAtEnd()) {
      if (take('"')) {
        if (!take('"')) return field;
        field += '"';
      } else {
        if (text_.front() == '\n') ++line_;
        field += takeFront(1);
      }
    }
    wrong = "a quote that is opened here is not closed";
    return field;
  }

  bool take(char c) {
    if (!text_.starts_with(c)) return false;
    text_.remove_prefix(1);
    return true;
  }

  bool takeLineBreak() {
    const auto hasReturn = take('\r');
    const auto hasBreak = take('\n');
    if (hasBreak) ++line_;
    return hasReturn || hasBreak;
  }

  void skipLine() {
    takeFront(std::min(text_.find('\n'), text_.size()));
    takeLineBreak();
  }

  std::string_view takeFront(std::size_t size) {
    const auto front = text_.substr(0, size);
    text_.remove_prefix(size);
    return front;
  }

  std::string_view text_;
  std::size_t line_ = 1;
};

std::string quotedField(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string field = "\"";
  for (const char c : text) field += c == '"' ? std::string("\"\"") : std::string(1, c);
  return field + '"';
}

}  // namespace

DictionaryText readTabs(std::string_view text) {
  DictionaryText dictionary;
  for (const auto& line : linesOf(text)) readTabLine(line, dictionary);
  return dictionary;
}

std::string tabLine(std::string_view pattern, std::string_view replacement) {
  return escaped(pattern) + '\t' + escaped(replacement) + '\n';
}

DictionaryText readCommas(std::string_view text) {
  DictionaryText dictionary;
  for (CommaReader reader(text); !reader.isAtEnd();) reader.readRecord(dictionary);
  return dictionary;
}

std::string commaLine(std::string_view pattern, std::string_view replacement) {
  return quotedField(pattern) + ',' + quotedField(replacement) + '\n';
}

}  // namespace kivra::control
