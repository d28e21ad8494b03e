#include "core/schema.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <variant>

#include "core/command.h"
#include "core/errors.h"

namespace zrt {
namespace {

constexpr int kKeysPerPanel = 90;

// What a version block does, step by step. In a statement "{n}" stands for the number of the step's row and "{innodb}"
// for the clause that makes an InnoDB table on the server at hand.

struct Run {
  std::string_view sql;
};
struct RunForEach {
  int first, last;  ///< values of {n}
  std::string_view sql;
};
/// The settings row {n} of each touch panel that has none yet.
struct AddMissingRows {
  int first, last;
  std::string_view sql;
};
/// Empty keys of the touch panels `first` to `last`.
struct AddPanelKeys {
  int first, last;
};
using Step = std::variant<Run, RunForEach, AddMissingRows, AddPanelKeys>;

constexpr std::array kToVersion1 = {
    Step(Run{"ALTER TABLE KASSA ADD N1 int(11), ADD N2 int(11), ADD N3 int(11), ADD N4 int(11), ADD T1 varchar(50)"}),
    Step(Run{"ALTER TABLE PROD ADD N1 int(11), ADD N2 int(11), ADD N3 int(11), ADD N4 int(11), ADD T1 varchar(50)"}),
    Step(Run{"ALTER TABLE TOVAR ADD N1 int(11), ADD N2 int(11), ADD N3 int(11), ADD N4 int(11), ADD T1 varchar(50)"}),
    Step(RunForEach{1, 8,
                    "ALTER TABLE CHECK{n} ADD N1 int(11), ADD N2 int(11), ADD N3 int(11), ADD N4 int(11), ADD T1 "
                    "varchar(50)"}),
    Step(Run{"ALTER TABLE CONST ADD T1 varchar(50), ADD T2 varchar(50), ADD T3 varchar(50), ADD T4 varchar(50), ADD T5 "
             "varchar(50), ADD T6 varchar(50), ADD T7 varchar(50), ADD T8 varchar(50), ADD T9 varchar(50), ADD T10 "
             "varchar(50)"}),
    Step(Run{"ALTER TABLE HOTKEYS ADD LV int(11), ADD NAME varchar(50)"}),
    Step(RunForEach{5, 12, "INSERT INTO CONST (COD, N4) VALUES ({n},0)"}),
    Step(AddPanelKeys{1, 12}),
    Step(Run{"UPDATE CONST SET N1=0 WHERE COD=1"}),
    Step(Run{"UPDATE CONST SET N5=0, N6=0, N7=0, N8=0, N9=1, N10='192.168.0.202' WHERE COD=2"}),
    Step(Run{"UPDATE CONST SET N2=1, N3=1, N5=0, N6='    ТОВАРНЫЙ  ЧЕК', N7=' Корвина МАГАЗИН-ОБРАЗЕЦ', N8='Городок "
             "Садовая 14д', N9='    ЕДИНЫЙ НАЛОГ', N10='       СПАСИБО' WHERE COD=3"}),
    Step(Run{"UPDATE CONST SET T1=1, T2=2, T3='COM1', T4=30, T5=0, T6=0, T7=0, T8='COM2'"}),
    Step(RunForEach{1, 12, "UPDATE CONST SET T9='Панель № {n}' WHERE COD={n}"}),
};

constexpr std::array kToVersion2 = {
    Step(Run{"CREATE TABLE IF NOT EXISTS DKHOLDER (ID int(11), CARD varchar(20), NAME varchar(50), FNAME varchar(50), "
             "ADRES varchar(20), TEL varchar(20), REZ int(11)) {innodb}"}),
    Step(RunForEach{9, 12,
                    "CREATE TABLE IF NOT EXISTS CHECK{n} (COD int(11), NAME varchar(50), KOL float, PRISE float, COST "
                    "float, NDS int(11), REZ int(11), SKID int(11), N1 int(11), N2 int(11), N3 int(11), N4 int(11), T1 "
                    "varchar(50)) {innodb}"}),
    Step(Run{"ALTER TABLE PERSON ADD REZ varchar(50) FIRST, ADD ID int(11) FIRST"}),
    Step(Run{"ALTER TABLE KASSA ADD N5 int(11), ADD N6 int(11), ADD N7 int(11)"}),
    Step(Run{"ALTER TABLE PROD ADD N5 int(11), ADD N6 int(11), ADD N7 int(11)"}),
    Step(Run{"ALTER TABLE TOVAR ADD N5 int(11), ADD N6 int(11), ADD N7 int(11)"}),
    Step(RunForEach{1, 12, "ALTER TABLE CHECK{n} ADD N5 int(11), ADD N6 int(11), ADD N7 int(11)"}),
    Step(Run{"ALTER TABLE CONST ADD T11 varchar(50), ADD T12 varchar(50), ADD T13 varchar(50), ADD T14 varchar(50), "
             "ADD T15 varchar(50)"}),
    Step(Run{"UPDATE CONST SET N2=2 WHERE COD=3"}),
    Step(Run{"UPDATE CONST SET T11='0_9600'"}),
};

constexpr std::array kToVersion3 = {
    Step(RunForEach{13, 24,
                    "CREATE TABLE IF NOT EXISTS CHECK{n} (COD int(11),NAME varchar(50),KOL float,PRISE float,COST "
                    "float,NDS int(11),REZ int(11),SKID int(11),N1 int(11),N2 int(11),N3 int(11),N4 int(11),T1 "
                    "varchar(50),N5 int(11),N6 int(11),N7 int(11)) {innodb}"}),
    Step(AddMissingRows{13, 24,
                        "INSERT INTO CONST (COD,N4,T1,T2,T3,T4,T5,T6,T7,T8,T9,T11) VALUES "
                        "({n},0,'1','2','COM3','30','0','0','0','COM2','резерв','0_9600')"}),
    Step(AddPanelKeys{13, 24}),
    Step(Run{"UPDATE CONST SET N2=3 WHERE COD=3"}),
};

constexpr std::array kToVersion4 = {
    Step(RunForEach{1, 24, "ALTER TABLE CHECK{n} MODIFY T1 varchar(100), ADD T2 varchar(200), ADD UKT varchar(24)"}),
    Step(Run{"ALTER TABLE TOVAR ADD N8 int(11), ADD N9 int(11), ADD UKT varchar(24)"}),
    Step(Run{"UPDATE TOVAR SET UKT=''"}),
    Step(Run{"ALTER TABLE PROD ADD N8 int(11), ADD N9 int(11), ADD UKT varchar(24)"}),
    Step(Run{"ALTER TABLE KASSA ADD N8 int(11), ADD N9 int(11)"}),
    Step(Run{"UPDATE CONST SET N2=4 WHERE COD=3"}),
};

struct VersionBlock {
  const Step* begin;
  const Step* end;
  std::string_view message;
};

/// The block at index v raises the schema from version v to v+1.
constexpr std::array kBlocks = {
    VersionBlock{kToVersion1.begin(), kToVersion1.end(), "База данных успешно обновлена до версии 1"},
    VersionBlock{kToVersion2.begin(), kToVersion2.end(), "База данных успешно обновлена до версии 2"},
    VersionBlock{kToVersion3.begin(), kToVersion3.end(), "База данных успешно обновлена до версии 3"},
    VersionBlock{kToVersion4.begin(), kToVersion4.end(), "База данных успешно обновлена до версии 4"},
};

constexpr auto kDocumentTables = std::to_array<std::string_view>({
    "CREATE TABLE IF NOT EXISTS REGISTR (ID bigint(20) NOT NULL AUTO_INCREMENT PRIMARY KEY, DOC int(11), DOCTYP "
    "tinyint(4), COD mediumint(8), KOL int(11), SUMM int(11), OSTKOL int(11), KARD int(11), DATEDOC datetime, DOCNEXT "
    "int(11), DATENEXT datetime, RUN tinyint(4), REZ int(11))",
    "CREATE TABLE IF NOT EXISTS JOURNAL (ID int(11) NOT NULL AUTO_INCREMENT PRIMARY KEY, DTYPE varchar(20), DATEDOC "
    "datetime, SUMM int(11), KLIENT varchar(50), PRIM varchar(50), CNTRL int(11), RUN varchar(2), REZ int(11))",
    "CREATE TABLE IF NOT EXISTS DOCUMENT (ID bigint(20) NOT NULL AUTO_INCREMENT PRIMARY KEY, COD mediumint(8), NAME "
    "varchar(50), KOL int(11), PRISE int(11), COST int(11), REZ int(11), TYP tinyint(4))",
    "CREATE TABLE IF NOT EXISTS DOCINVENT (ID bigint(20) NOT NULL AUTO_INCREMENT PRIMARY KEY, DOC int(11), COD "
    "mediumint(8), NAME varchar(50), OST int(11), KOL int(11), PRC int(11), PRCR int(11), REZ int(11))",
    "CREATE TABLE IF NOT EXISTS DOCPRICE (ID bigint(20) NOT NULL AUTO_INCREMENT PRIMARY KEY, DOC int(11), COD "
    "mediumint(8), NAME varchar(50), PRC1 int(11), PRC2 int(11), REZ int(11))",
});

/// Is the server's `version` this one or later?
bool IsSince(const std::string& version, int wanted_major, int wanted_minor) {
  int major = 0;
  int minor = 0;
  // Drivers pad the numbers with zeros ("05.05.0062"); a server that says nothing is taken for a present one.
  if (std::sscanf(version.c_str(), "%d.%d", &major, &minor) < 2) return true;
  return major > wanted_major || (major == wanted_major && minor >= wanted_minor);
}

/// Servers before 5.5 know the table's engine by TYPE, those since then only by ENGINE.
bool KnowsEngineClause(const std::string& version) {
  return IsSince(version, 5, 5);
}

constexpr std::string_view kEngineClause = "ENGINE=InnoDB";

std::string Compose(std::string_view sql, int n, std::string_view innodb) {
  return fmt::format(fmt::runtime(sql), fmt::arg("n", n), fmt::arg("innodb", innodb));
}

std::vector<std::string> PanelKeyStatements(const AddPanelKeys& step) {
  std::vector<std::string> statements;
  for (int panel = step.first; panel <= step.last; ++panel) {
    for (int key = 1; key <= kKeysPerPanel; ++key) {
      const int level = key < 31 ? 1 : key >= 61 ? 3 : 2;
      statements.push_back(
          fmt::format("INSERT INTO HOTKEYS (ID,CODE,REZ,LV) VALUES ({},0,{},{})", panel * 100 + key, panel, level));
    }
  }
  return statements;
}

class Upgrade {
 public:
  explicit Upgrade(Session& session) : connection_(session.MainConnection), command_(connection_) {
    innodb_ = KnowsEngineClause(connection_.ServerVersion()) ? kEngineClause : "TYPE=InnoDB";
  }

  void operator()(const Run& step) { Execute(Compose(step.sql, 0, innodb_)); }

  void operator()(const RunForEach& step) {
    for (int n = step.first; n <= step.last; ++n) Execute(Compose(step.sql, n, innodb_));
  }

  void operator()(const AddMissingRows& step) {
    Recordset existing;
    for (int n = step.first; n <= step.last; ++n) {
      existing.Open(fmt::format("SELECT COD FROM CONST WHERE COD={}", n), connection_);
      const bool missing = existing.RecordCount() == 0;
      if (missing) Execute(Compose(step.sql, n, innodb_));
      existing.Close();
    }
  }

  void operator()(const AddPanelKeys& step) {
    for (const std::string& statement : PanelKeyStatements(step)) Execute(statement);
  }

 private:
  void Execute(const std::string& sql) {
    command_.CommandText = sql;
    command_.Execute();
  }

  Connection& connection_;
  Command command_;
  std::string_view innodb_;
};

/// Gathers the statements of the steps for a database that no upgrade has touched: every row is still missing.
class Script {
 public:
  void operator()(const Run& step) { statements.push_back(Compose(step.sql, 0, kEngineClause)); }

  void operator()(const RunForEach& step) { ForEach(step.first, step.last, step.sql); }

  void operator()(const AddMissingRows& step) { ForEach(step.first, step.last, step.sql); }

  void operator()(const AddPanelKeys& step) {
    const std::vector<std::string> keys = PanelKeyStatements(step);
    statements.insert(statements.end(), keys.begin(), keys.end());
  }

  std::vector<std::string> statements;

 private:
  void ForEach(int first, int last, std::string_view sql) {
    for (int n = first; n <= last; ++n) statements.push_back(Compose(sql, n, kEngineClause));
  }
};

constexpr std::string_view kDocumentTableSuffix = " ENGINE=InnoDB DEFAULT CHARSET=latin1";

}  // namespace

std::string CharacterSetRemedy(Connection& connection) {
  Recordset schema;
  schema.Open("SELECT DATABASE(),@@collation_database", connection);
  if (schema.Field(1).TextOrEmpty() == "latin1_bin") return {};
  return fmt::format("ALTER DATABASE `{}` CHARACTER SET latin1 COLLATE latin1_bin;", schema.Field(0).TextOrEmpty());
}

void UpgradeDatabase(Session& session, SchemaDialog& dialog, std::uint8_t& version) {
  while (version < kBlocks.size()) {
    const VersionBlock& block = kBlocks[version];
    try {
      Upgrade upgrade(session);
      std::for_each(block.begin, block.end, [&](const Step& step) { std::visit(upgrade, step); });
    } catch (const DatabaseError& failure) {
      dialog.Warn("Ошибка обновления базы данных!", failure);
      return;
    }
    ++version;
    dialog.Tell(block.message);
  }
}

void CreateDocumentTables(Session& session, SchemaDialog& dialog, bool register_wanted) {
  Command& command = session.MainCommand();
  const auto execute = [&command](std::string sql) {
    command.CommandText = std::move(sql);
    command.Execute();
  };
  if (register_wanted) {
    // The operator's answer decides, right or wrong; the server's only says which button Enter presses.
    const bool usual = !IsSince(session.MainConnection.ServerVersion(), 4, 1);
    const bool old_server = dialog.AskYesNo("Версия сервера MySQL 4.0.12 ?", usual);
    const std::string_view suffix = old_server ? " TYPE=InnoDB" : kDocumentTableSuffix;
    for (const std::string_view table : kDocumentTables) execute(fmt::format("{}{}", table, suffix));
    execute("UPDATE TOVAR SET N5=0 WHERE N5 IS NULL");
    execute("UPDATE TOVAR SET N7=0 WHERE N7 IS NULL");
  }
  execute(fmt::format("UPDATE CONST SET N3={} WHERE COD=7", register_wanted ? -1 : 0));
}

std::vector<std::string> UpgradeStatements() {
  Script script;
  for (const VersionBlock& block : kBlocks) {
    std::for_each(block.begin, block.end, [&](const Step& step) { std::visit(script, step); });
  }
  return script.statements;
}

std::vector<std::string> DocumentTableStatements() {
  std::vector<std::string> statements;
  for (const std::string_view table : kDocumentTables) {
    statements.push_back(fmt::format("{}{}", table, kDocumentTableSuffix));
  }
  return statements;
}

}  // namespace zrt
