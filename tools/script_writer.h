#pragma once

#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace zrt::tools {

/// Writes an SQL script in the bytes that the database keeps: texts come in as UTF-8 and leave as windows-1251. Rows
/// are gathered into large inserts, one pending insert for each table, so that millions of them load fast.
class ScriptWriter {
 public:
  explicit ScriptWriter(std::FILE* out) : out_(out) {}

  /// One statement without its semicolon. Rows gathered so far are written first.
  void Statement(std::string_view sql);

  /// A whole script as it stands, with its own semicolons.
  void Script(std::string_view text);

  /// A row of `table`: `columns` as "A,B", `values` as "1,'x'". A table is always given the same columns.
  void Row(std::string_view table, std::string_view columns, std::string_view values);

  /// Writes all rows gathered so far. Throws Error when the output can't be written.
  void Flush();

 private:
  void FlushTable(std::string& pending);
  void Write(std::string_view utf8);

  std::FILE* out_;
  std::map<std::string, std::string, std::less<>> pending_;
};

/// 'text' with quotes and back-slashes protected.
std::string Quoted(std::string_view text);

}  // namespace zrt::tools
