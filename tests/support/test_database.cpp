#include "support/test_database.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <memory>
#include <string_view>

#include "core/errors.h"
#include "core/schema.h"
#include "support/fixed_clock.h"

namespace zrt::test {
namespace {

constexpr const char* kBaseSchema = ZRT_SOURCE_DIR "/data/base_schema.sql";
constexpr const char* kDocumentTables[] = {"REGISTR", "JOURNAL", "DOCUMENT", "DOCINVENT", "DOCPRICE"};

std::string NewSchemaName() {
  static int count = 0;
  return fmt::format("zrt_test_{}_{}", getpid(), ++count);
}

/// Lets the upgrade run through; the register is wanted, on a server of today.
class SilentDialog final : public SchemaDialog {
 public:
  void Tell(std::string_view) override {}
  void Warn(std::string_view text, const DatabaseError&) override {
    throw Error("the template's upgrade fails: " + std::string(text));
  }
  bool AskYesNo(std::string_view, bool) override { return false; }
};

void CreateSchema(Connection& connection, const std::string& name) {
  connection.Execute("CREATE DATABASE " + name + " DEFAULT CHARACTER SET latin1 COLLATE latin1_bin");
  connection.Execute("USE " + name);
}

void DropSchema(Connection& connection, const std::string& name) {
  try {
    connection.Execute("DROP DATABASE " + name);
  } catch (const DatabaseError&) {
    // A server that was stopped takes its schemas with it.
  }
}

/// A schema of version 4 with all tables, made by the program's own upgrade once per process.
class Template {
 public:
  Template() : name_(NewSchemaName()) {
    connection_.Open(MainConnectionString(TestAddress("")));
    CreateSchema(connection_, name_);
    RunSqlFile(kBaseSchema, connection_);
    const FixedClock clock;
    Session session(TestAddress(name_), clock, {});
    session.Connect();
    SilentDialog dialog;
    std::uint8_t version = 0;
    UpgradeDatabase(session, dialog, version);
    CreateDocumentTables(session, dialog, true);
    connection_.Execute("UPDATE CONST SET N3=NULL WHERE COD=7");
    tables_.Open("SHOW TABLES", connection_);
  }
  ~Template() { DropSchema(connection_, name_); }

  void CopyTo(Connection& connection, bool with_documents) const {
    for (int row = 1; row <= tables_.RecordCount(); ++row) {
      const std::string table = tables_.At(row, 0).Text();
      const bool document =
          std::find(std::begin(kDocumentTables), std::end(kDocumentTables), table) != std::end(kDocumentTables);
      if (document && !with_documents) continue;
      connection.Execute(fmt::format("CREATE TABLE {} LIKE {}.{}", table, name_, table));
    }
    for (const char* table : {"CONST", "HOTKEYS"}) {
      connection.Execute(fmt::format("INSERT INTO {} SELECT * FROM {}.{}", table, name_, table));
    }
  }

 private:
  std::string name_;
  Connection connection_;
  Recordset tables_;
};

/// The operating mode in the base, stage by stage.
constexpr std::array kOperatingModes = {"NULL", "NULL", "0", "-1", "1", "2"};

}  // namespace

DatabaseAddress TestAddress(const std::string& schema) {
  return {ZRT_TEST_HOST, "zrt", schema};
}

std::string Numbers(int count) {
  return fmt::format(
      "(SELECT @row:=@row+1 AS seq FROM (SELECT @row:=0) zero,information_schema.COLLATIONS a,"
      "information_schema.COLLATIONS b,information_schema.COLLATIONS c LIMIT {}) numbers",
      count);
}

void RunSqlFile(const std::string& path, Connection& connection) {
  std::ifstream file(path);
  if (!file) throw FileError(path, "can't be read");
  std::string statement;
  for (std::string line; std::getline(file, line);) {
    line = line.substr(0, line.find("--"));
    line.erase(line.find_last_not_of(" \t\r") + 1);
    if (line.empty()) continue;
    statement += line + "\n";
    if (!line.ends_with(';')) continue;
    connection.Execute(std::string_view(statement).substr(0, statement.size() - 2));
    statement.clear();
  }
}

TestDatabase::TestDatabase(Stage stage) : address_(TestAddress(NewSchemaName())) {
  connection_.Open(MainConnectionString(TestAddress("")));
  CreateSchema(connection_, address_.schema);
  if (stage == Stage::kVersion0) {
    RunSqlFile(kBaseSchema, connection_);
    return;
  }
  static const Template kTemplate;
  kTemplate.CopyTo(connection_, stage == Stage::kRegister);
  connection_.Execute(
      fmt::format("UPDATE CONST SET N3={} WHERE COD=7", kOperatingModes.at(static_cast<std::size_t>(stage))));
}

TestDatabase::~TestDatabase() {
  DropSchema(connection_, address_.schema);
}

void TestDatabase::Sql(const std::string& statement) {
  connection_.Execute(statement);
}

std::vector<std::vector<std::string>> TestDatabase::Rows(const std::string& statement) {
  Recordset set;
  set.Open(statement, connection_);
  std::vector<std::vector<std::string>> rows;
  for (int row = 1; row <= set.RecordCount(); ++row) {
    std::vector<std::string>& cells = rows.emplace_back();
    for (int i = 0; i < set.FieldCount(); ++i) {
      const Cell cell = set.At(row, i);
      cells.push_back(cell.IsNull() ? "NULL" : cell.Text());
    }
  }
  return rows;
}

std::string TestDatabase::Value(const std::string& statement) {
  const std::vector<std::vector<std::string>> rows = Rows(statement);
  if (rows.size() != 1 || rows[0].size() != 1) throw Error("not a single value: " + statement);
  return rows[0][0];
}

std::vector<std::string> TestDatabase::Column(const std::string& statement) {
  std::vector<std::string> column;
  for (const std::vector<std::string>& row : Rows(statement)) column.push_back(row.at(0));
  return column;
}

}  // namespace zrt::test
