#pragma once

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/defaults_database.h"

namespace kivra {

/// A prepared SQL statement and the row that it is at. An error stays: `step` answers the first.
class Statement {
 public:
  Statement(sqlite3* connection, std::string_view sql) {
    code_ = sqlite3_prepare_v2(connection, sql.data(), static_cast<int>(sql.size()), &statement_,
                               nullptr);
  }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() { sqlite3_finalize(statement_); }

  int step() { return code_ == SQLITE_OK ? sqlite3_step(statement_) : code_; }

  // Bound bytes must outlive the statement. A null pointer would be bound as NULL.
  void bindText(int index, std::string_view text) {
    bound(sqlite3_bind_text64(statement_, index, text.empty() ? "" : text.data(), text.size(),
                              nullptr, SQLITE_UTF8));
  }
  void bindBlob(int index, const std::string& bytes) {
    bound(sqlite3_bind_blob64(statement_, index, bytes.data(), bytes.size(), nullptr));
  }
  void bindBool(int index, bool value) {
    bound(sqlite3_bind_int(statement_, index, value ? 1 : 0));
  }

  int columnType(int column) { return sqlite3_column_type(statement_, column); }
  std::int64_t integer(int column) { return sqlite3_column_int64(statement_, column); }
  std::string bytes(int column) {
    const auto* data = static_cast<const char*>(sqlite3_column_blob(statement_, column));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
    return data == nullptr ? std::string() : std::string(data, size);
  }

 private:
  void bound(int code) {
    if (code_ == SQLITE_OK) code_ = code;
  }

  sqlite3_stmt* statement_ = nullptr;
  int code_ = SQLITE_OK;
};

/// The value in a column of the row, of the type that is written beside it; nothing when the two do
/// not fit.
std::optional<DefaultsValue> decodedValue(const std::string& type, Statement& row, int column);

/// Binds a value's type and the value to two neighbouring parameters. Must outlive the statement's
/// use.
class ValueBinder {
 public:
  ValueBinder(Statement& statement, int index) : statement_(statement), index_(index) {}

  void operator()(bool value);
  void operator()(const std::string& value);
  void operator()(const std::vector<std::string>& value);
  void operator()(const Data& value);

 private:
  Statement& statement_;
  int index_;
  std::string array_;
};

}  // namespace kivra
