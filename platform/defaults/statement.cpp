#include "platform/defaults/statement.h"

#include <utility>

#include "platform/defaults/netstrings.h"

namespace kivra {

std::optional<DefaultsValue> decodedValue(const std::string& type, Statement& row, int column) {
  const auto storage = row.columnType(column);
  if (type == "bool" && storage == SQLITE_INTEGER) {
    const auto number = row.integer(column);
    if (number == 0 || number == 1) return number == 1;
  }
  if (type == "string" && storage == SQLITE_TEXT) return row.bytes(column);
  if (type == "data" && storage == SQLITE_BLOB) return Data{row.bytes(column)};
  if (type == "array" && storage == SQLITE_TEXT) {
    if (auto strings = netstrings::decoded(row.bytes(column))) return std::move(*strings);
  }
  return std::nullopt;
}

void ValueBinder::operator()(bool value) {
  statement_.bindText(index_, "bool");
  statement_.bindBool(index_ + 1, value);
}

void ValueBinder::operator()(const std::string& value) {
  statement_.bindText(index_, "string");
  statement_.bindText(index_ + 1, value);
}

void ValueBinder::operator()(const std::vector<std::string>& value) {
  array_ = netstrings::encoded(value);
  statement_.bindText(index_, "array");
  statement_.bindText(index_ + 1, array_);
}

void ValueBinder::operator()(const Data& value) {
  statement_.bindText(index_, "data");
  statement_.bindBlob(index_ + 1, value.bytes);
}

}  // namespace kivra
