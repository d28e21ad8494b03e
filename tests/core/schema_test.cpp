#include "core/schema.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/errors.h"
#include "support/fixed_clock.h"
#include "support/scripted_faults.h"
#include "support/test_database.h"

namespace zrt {
namespace {

using test::ScriptedFaults;
using test::Stage;
using test::TestDatabase;

class RecordingDialog final : public SchemaDialog {
 public:
  void Tell(std::string_view text) override { log.push_back("tell: " + std::string(text)); }
  void Warn(std::string_view text, const DatabaseError& failure) override {
    log.push_back(fmt::format("warn: {} {}", text, failure.Native()));
  }
  bool AskYesNo(std::string_view text, bool usual) override {
    log.push_back("ask: " + std::string(text));
    EXPECT_FALSE(usual) << "the tests' server is younger";
    return yes;
  }
  std::vector<std::string> log;
  bool yes = false;
};

class Schema : public testing::Test {
 protected:
  explicit Schema(Stage stage = Stage::kVersion0) : shop_(stage), session_(shop_.Address(), clock_, {}) {
    session_.MainConnection.SetFaultSource(&faults_);
    session_.Connect();
  }

  std::uint8_t Upgrade(std::uint8_t version) {
    dialog_.log.clear();
    UpgradeDatabase(session_, dialog_, version);
    return version;
  }

  std::string Columns(const std::string& table) {
    return shop_.Value(
        "SELECT GROUP_CONCAT(COLUMN_NAME ORDER BY ORDINAL_POSITION) FROM information_schema.COLUMNS "
        "WHERE TABLE_SCHEMA=DATABASE() AND TABLE_NAME='" +
        table + "'");
  }

  TestDatabase shop_;
  test::FixedClock clock_;
  ScriptedFaults faults_;
  Session session_;
  RecordingDialog dialog_;
};

TEST_F(Schema, ABaseOfTheOldestVersionGoesThroughAllBlocks) {
  shop_.Sql("INSERT INTO TOVAR (COD,NAME) VALUES (1,'Чай')");
  EXPECT_EQ(Upgrade(0), 4);
  EXPECT_TRUE(Columns("PROD").ends_with("N1,N2,N3,N4,T1,N5,N6,N7,N8,N9,UKT"));
  EXPECT_TRUE(Columns("KASSA").ends_with("N1,N2,N3,N4,T1,N5,N6,N7,N8,N9"));
  EXPECT_TRUE(Columns("TOVAR").ends_with("N1,N2,N3,N4,T1,N5,N6,N7,N8,N9,UKT"));
  EXPECT_TRUE(Columns("CHECK1").ends_with("N1,N2,N3,N4,T1,N5,N6,N7,T2,UKT"));
  EXPECT_EQ(Columns("CHECK9"), "COD,NAME,KOL,PRISE,COST,NDS,REZ,SKID,N1,N2,N3,N4,T1,N5,N6,N7,T2,UKT");
  EXPECT_EQ(Columns("CHECK24"), Columns("CHECK9"));
  EXPECT_TRUE(Columns("PERSON").starts_with("ID,REZ,"));
  EXPECT_EQ(Columns("DKHOLDER"), "ID,CARD,NAME,FNAME,ADRES,TEL,REZ");
  EXPECT_EQ(shop_.Value("SELECT UKT FROM TOVAR"), "");
  EXPECT_EQ(shop_.Value("SELECT CHARACTER_MAXIMUM_LENGTH FROM information_schema.COLUMNS WHERE "
                        "TABLE_SCHEMA=DATABASE() AND TABLE_NAME='CHECK3' AND COLUMN_NAME='T1'"),
            "100");
  EXPECT_EQ(shop_.Value("SELECT GROUP_CONCAT(DISTINCT ENGINE) FROM information_schema.TABLES WHERE "
                        "TABLE_SCHEMA=DATABASE()"),
            "InnoDB");
}

TEST_F(Schema, SettingsAndTouchKeysAfterTheUpgrades) {
  shop_.Sql("INSERT INTO CONST (COD,N1) VALUES (20,'своё')");
  Upgrade(0);
  const std::pair<const char*, const char*> kCells[] = {
      {"SELECT COUNT(*) FROM CONST", "24"},
      {"SELECT N2 FROM CONST WHERE COD=3", "4"},
      {"SELECT CONCAT_WS('|',N6,N7,N8,N9,N10) FROM CONST WHERE COD=3",
       "    ТОВАРНЫЙ  ЧЕК| Корвина МАГАЗИН-ОБРАЗЕЦ|Городок Садовая 14д|    ЕДИНЫЙ НАЛОГ|       СПАСИБО"},
      {"SELECT CONCAT_WS('|',N5,N6,N7,N8,N9,N10) FROM CONST WHERE COD=2", "0|0|0|0|1|192.168.0.202"},
      {"SELECT N8 FROM CONST WHERE COD=5", "NULL"},
      {"SELECT N3 FROM CONST WHERE COD=7", "NULL"},
      {"SELECT CONCAT_WS('|',T9,T3,T11) FROM CONST WHERE COD=12", "Панель № 12|COM1|0_9600"},
      {"SELECT CONCAT_WS('|',T9,T1,T2,T3,T4,T8,T11,N4) FROM CONST WHERE COD=13", "резерв|1|2|COM3|30|COM2|0_9600|0"},
      {"SELECT CONCAT_WS('|',N1,T3,T11) FROM CONST WHERE COD=20", "своё|COM1|0_9600"},  // the operator's own row
      {"SELECT COUNT(*) FROM HOTKEYS", "2160"},
      {"SELECT COUNT(DISTINCT ID) FROM HOTKEYS", "2160"},
      {"SELECT COUNT(*) FROM HOTKEYS WHERE CODE<>0 OR CODE IS NULL", "0"},
      {"SELECT COUNT(*) FROM HOTKEYS WHERE ID DIV 100<>REZ OR ID MOD 100 NOT BETWEEN 1 AND 90", "0"},
      {"SELECT COUNT(*) FROM HOTKEYS WHERE LV<>1+(ID MOD 100-1) DIV 30", "0"},
  };
  for (const auto& [statement, value] : kCells) EXPECT_EQ(shop_.Value(statement), value) << statement;
}

TEST_F(Schema, AFailureInTheSecondBlockStaysUntilTheOperatorMendsIt) {
  struct FailsOnce final : FaultSource {
    Verdict BeforeStatement(std::string_view sql) override {
      return sql.starts_with("ALTER TABLE PROD ADD N5") && !std::exchange(done, true) ? Verdict::kFail : Verdict::kRun;
    }
    bool done = false;
  } second_block;
  session_.MainConnection.SetFaultSource(&second_block);
  EXPECT_EQ(Upgrade(0), 1);
  EXPECT_EQ(dialog_.log, (std::vector<std::string>{"tell: База данных успешно обновлена до версии 1",
                                                   "warn: Ошибка обновления базы данных! 1105"}));
  EXPECT_EQ(shop_.Value("SELECT N2 FROM CONST WHERE COD=3"), "1");
  // What ran stays, so the block's next try fails on columns that are there.
  EXPECT_TRUE(Columns("KASSA").ends_with("N5,N6,N7"));
  EXPECT_EQ(Upgrade(1), 1);
  EXPECT_EQ(dialog_.log, std::vector<std::string>{"warn: Ошибка обновления базы данных! 1060"});

  shop_.Sql("ALTER TABLE PERSON DROP REZ, DROP ID");
  shop_.Sql("ALTER TABLE KASSA DROP N5, DROP N6, DROP N7");
  EXPECT_EQ(Upgrade(1), 4);
  EXPECT_EQ(dialog_.log.size(), 3U);
}

class NewestSchema : public Schema {
 protected:
  NewestSchema() : Schema(Stage::kFirstRun) { faults_.Forget(); }
};

TEST_F(NewestSchema, NothingRunsFromVersionFourOn) {
  for (const std::uint8_t version : std::initializer_list<std::uint8_t>{4, 5, 255})
    EXPECT_EQ(Upgrade(version), version);
  EXPECT_TRUE(dialog_.log.empty());
  EXPECT_TRUE(faults_.Statements().empty());
}

TEST_F(NewestSchema, DocumentTablesOnAServerOfToday) {
  shop_.Sql("INSERT INTO TOVAR (COD,N5,N7) VALUES (1,NULL,NULL),(2,5000,250)");
  CreateDocumentTables(session_, dialog_, true);
  EXPECT_EQ(dialog_.log, std::vector<std::string>{"ask: Версия сервера MySQL 4.0.12 ?"});
  EXPECT_EQ(Columns("JOURNAL"), "ID,DTYPE,DATEDOC,SUMM,KLIENT,PRIM,CNTRL,RUN,REZ");
  EXPECT_EQ(Columns("REGISTR"), "ID,DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,KARD,DATEDOC,DOCNEXT,DATENEXT,RUN,REZ");
  EXPECT_EQ(Columns("DOCUMENT"), "ID,COD,NAME,KOL,PRISE,COST,REZ,TYP");
  EXPECT_EQ(Columns("DOCINVENT"), "ID,DOC,COD,NAME,OST,KOL,PRC,PRCR,REZ");
  EXPECT_EQ(Columns("DOCPRICE"), "ID,DOC,COD,NAME,PRC1,PRC2,REZ");
  EXPECT_EQ(shop_.Value("SELECT GROUP_CONCAT(CONCAT_WS(':',N5,N7) ORDER BY COD) FROM TOVAR"), "0:0,5000:250");
  EXPECT_EQ(shop_.Value("SELECT N3 FROM CONST WHERE COD=7"), "-1");
  CreateDocumentTables(session_, dialog_, true);  // a repeat does no harm
}

TEST_F(NewestSchema, RefusingTheRegisterIsStoredAndMakesNoTables) {
  shop_.Sql("INSERT INTO TOVAR (COD,N5,N7) VALUES (1,NULL,NULL)");
  CreateDocumentTables(session_, dialog_, false);
  EXPECT_TRUE(dialog_.log.empty());
  EXPECT_EQ(faults_.Statements(), std::vector<std::string>{"UPDATE CONST SET N3=0 WHERE COD=7"});
  EXPECT_EQ(Columns("JOURNAL"), "NULL");
}

TEST_F(NewestSchema, TheOldServersClauseIsRefusedByANewOne) {
  dialog_.yes = true;
  EXPECT_THROW(CreateDocumentTables(session_, dialog_, true), DatabaseError);
  EXPECT_TRUE(faults_.Statements().back().ends_with(" TYPE=InnoDB"));
  EXPECT_EQ(shop_.Value("SELECT N3 FROM CONST WHERE COD=7"), "NULL");
}

}  // namespace
}  // namespace zrt
