// kivra-defaults: shows and changes the settings from a terminal.

#include <chrono>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/defaults/sqlite_defaults_database.h"
#include "program_options.h"
#include "settings/settings_store.h"
#include "value_text.h"

namespace kivra {

namespace {

using Arguments = std::vector<std::string>;

constexpr std::string_view usage = R"(Usage: kivra-defaults read [KEY]
       kivra-defaults write KEY VALUE
       kivra-defaults delete KEY

Shows and changes the settings of Kivra. Kivra may be running; it reads them when it starts.

VALUE is one of
  STRING, -string STRING      a string
  -bool true|false|yes|no|1|0 a truth value
  -array [STRING...]          an array of strings in the place of the present value
  -array-add STRING...        more strings at the end of the array under KEY
  -data HEX                   bytes, two hexadecimal digits each

read KEY prints a string as it is and other values in these forms; read without a KEY prints
KEY = VALUE for every stored value:
  1, 0                        a truth value
  "text"                      a string; \", \\, \n and \xNN stand for special characters
  ( "one", "two" )            an array, each string on a line of its own
  <68656c6c6f>                bytes

Settings that were never changed are not stored. The excluded applications, kivra.skipBundleIDs, are
read and added to as they are in force all the same. The file is kivra/defaults.sqlite in
$XDG_CONFIG_HOME or in ~/.config.

Exit status: 0 done, 1 no such key, bad value or the settings cannot be saved, 2 wrong usage.
)";

struct Failure {
  int status;
  std::string message;
};

[[noreturn]] void wrongUsage(const std::string& message) {
  throw Failure{wrongUsageStatus, message};
}

SqliteDefaultsDatabase openDatabase() {
  using std::chrono::seconds;
  const auto warn = [](std::string_view line) { std::cerr << line << '\n'; };
  return {userDefaultsPath(), warn, DefaultsWaits{seconds(5), seconds(5), seconds(0)}};
}

[[noreturn]] void throwNoValue(const std::string& key) {
  throw Failure{1, "no value under " + quotedText(key)};
}

/// The value under the key or, where none is stored, the list that holds until one is.
std::optional<DefaultsValue> valueInForce(DefaultsDatabase& database, const std::string& key) {
  auto value = database.objectForKey(key);
  if (!value && key == "kivra.skipBundleIDs") return defaultSkipBundleIDs();
  return value;
}

void read(const Arguments& arguments) {
  if (arguments.size() > 1) wrongUsage("read takes one key");
  auto database = openDatabase();
  if (arguments.empty()) {
    for (const auto& [key, value] : database.dictionaryRepresentation()) {
      std::cout << key << " = " << valueText(value) << '\n';
    }
    return;
  }
  const auto value = valueInForce(database, arguments[0]);
  if (!value) throwNoValue(arguments[0]);
  const auto* string = std::get_if<std::string>(&*value);
  std::cout << (string != nullptr ? *string : valueText(*value)) << '\n';
}

std::vector<std::string> extendedArray(DefaultsDatabase& database, const std::string& key,
                                       const Arguments& more) {
  const auto stored = valueInForce(database, key).value_or(std::vector<std::string>());
  const auto* array = std::get_if<std::vector<std::string>>(&stored);
  if (array == nullptr) throw Failure{1, "the value under " + quotedText(key) + " is not an array"};
  auto extended = *array;
  extended.insert(extended.end(), more.begin(), more.end());
  return extended;
}

/// The only element, which is wanted after the option.
const std::string& single(const Arguments& values, const std::string& option) {
  if (values.size() != 1) wrongUsage(option + " takes one value");
  return values[0];
}

template <class T>
DefaultsValue wellFormed(std::optional<T> value, const std::string& text, const char* kind) {
  if (!value) throw Failure{1, quotedText(text) + " is not " + kind};
  return std::move(*value);
}

DefaultsValue parsedValue(DefaultsDatabase& database, const std::string& key,
                          const Arguments& arguments) {
  const auto& option = arguments[0];
  const Arguments values(arguments.begin() + 1, arguments.end());
  if (option == "-array") return values;
  if (option == "-array-add") return extendedArray(database, key, values);
  if (option == "-string") return single(values, option);
  if (option == "-bool") {
    return wellFormed(parsedBool(single(values, option)), values[0], "a truth value");
  }
  if (option == "-data") {
    return wellFormed(parsedData(single(values, option)), values[0], "hexadecimal bytes");
  }
  if (option.starts_with('-')) wrongUsage("unknown option " + option);
  return single(arguments, "write KEY");
}

void requireSaved(const SqliteDefaultsDatabase& database) {
  if (!database.isSaved()) throw Failure{1, "the settings could not be saved"};
}

void write(const Arguments& arguments) {
  if (arguments.size() < 2) wrongUsage("write takes a key and a value");
  auto database = openDatabase();
  const auto& key = arguments[0];
  database.setObject(parsedValue(database, key, {arguments.begin() + 1, arguments.end()}), key);
  requireSaved(database);
}

void remove(const Arguments& arguments) {
  if (arguments.size() != 1) wrongUsage("delete takes one key");
  auto database = openDatabase();
  if (!database.objectForKey(arguments[0])) throwNoValue(arguments[0]);
  database.removeObject(arguments[0]);
  requireSaved(database);
}

void run(const Arguments& arguments) {
  if (arguments.empty()) wrongUsage("a command is missing");
  const auto& command = arguments[0];
  const Arguments rest(arguments.begin() + 1, arguments.end());
  if (command == "read") {
    read(rest);
  } else if (command == "write") {
    write(rest);
  } else if (command == "delete") {
    remove(rest);
  } else {
    wrongUsage("unknown " + std::string(command.starts_with('-') ? "option " : "command ") +
               command);
  }
}

}  // namespace

}  // namespace kivra

int main(int argc, char** argv) {
  constexpr auto program = "kivra-defaults";
  const kivra::Arguments words(argv + 1, argv + argc);
  if (const auto status = kivra::answerCommonOption(words, program, kivra::usage)) return *status;
  try {
    kivra::run(words);
    return std::cout.flush() ? 0 : 1;
  } catch (const kivra::Failure& failure) {
    if (failure.status == kivra::wrongUsageStatus) {
      return kivra::complainOfUsage(program, failure.message);
    }
    std::cerr << "kivra-defaults: " << failure.message << '\n';
    return failure.status;
  }
}
