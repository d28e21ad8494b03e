#include "script_writer.h"

#include <fmt/format.h>

#include "core/errors.h"
#include "core/text.h"

namespace zrt::tools {
namespace {

/// Well below the smallest packet that a server takes by default.
constexpr std::size_t kInsertBytes = 400'000;

}  // namespace

void ScriptWriter::Statement(std::string_view sql) {
  Flush();
  Write(sql);
  Write(";\n");
}

void ScriptWriter::Script(std::string_view text) {
  Flush();
  Write(text);
}

void ScriptWriter::Row(std::string_view table, std::string_view columns, std::string_view values) {
  auto entry = pending_.find(table);
  if (entry == pending_.end()) entry = pending_.emplace(table, "").first;
  std::string& pending = entry->second;
  if (pending.empty()) {
    pending = fmt::format("INSERT INTO {} ({}) VALUES\n", table, columns);
  } else {
    pending += ",\n";
  }
  pending += '(';
  pending += values;
  pending += ')';
  if (pending.size() > kInsertBytes) FlushTable(pending);
}

void ScriptWriter::Flush() {
  for (auto& [table, pending] : pending_) FlushTable(pending);
  if (std::fflush(out_) != 0) throw Error("the script can't be written");
}

void ScriptWriter::FlushTable(std::string& pending) {
  if (pending.empty()) return;
  pending += ";\n";
  Write(pending);
  pending.clear();
}

void ScriptWriter::Write(std::string_view utf8) {
  const std::string bytes = ToWindows1251(utf8);
  if (std::fwrite(bytes.data(), 1, bytes.size(), out_) != bytes.size()) throw Error("the script can't be written");
}

std::string Quoted(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'' || c == '\\') quoted += c;
    quoted += c;
  }
  return quoted + '\'';
}

}  // namespace zrt::tools
