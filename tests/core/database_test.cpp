#include <fmt/format.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <limits>
#include <string>
#include <thread>

#include "core/errors.h"
#include "core/session.h"
#include "support/fixed_clock.h"
#include "support/scripted_faults.h"
#include "support/test_database.h"

namespace zrt {
namespace {

using test::ScriptedFaults;
using test::Stage;
using test::TestAddress;
using test::TestDatabase;

class Database : public testing::Test {
 protected:
  Database() {
    connection_.SetFaultSource(&faults_);
    connection_.Open(MainConnectionString(shop_.Address()));
    shop_.Sql("CREATE TABLE T (N int, TXT varchar(50), D datetime, DEC3 decimal(10,3), F float)");
  }

  TestDatabase shop_{Stage::kVersion0};
  ScriptedFaults faults_;
  Connection connection_;
  Recordset set_;
};

TEST_F(Database, TheConnectionStringHasItsFieldsInOrder) {
  EXPECT_EQ(MainConnectionString({"10.0.0.5", "kassa", "shop"}),
            "driver={MySQL ODBC 8.0 ANSI Driver}; server=10.0.0.5; uid=kassa; pwd=41730926; database=shop; "
            "charset=latin1");
}

TEST_F(Database, StatementsMeanTheSameOnEveryServer) {
  EXPECT_EQ(connection_.Execute("INSERT INTO T (N,TXT) VALUES (1,REPEAT('я',60))"), 1);  // cut, not refused
  set_.Open("SELECT TXT,N FROM T GROUP BY N", connection_);
  EXPECT_EQ(set_.Field(0).Text().size(), 100U);  // 50 Cyrillic letters
  EXPECT_EQ(connection_.Execute("UPDATE T SET N=2 WHERE N=77"), 0);
  EXPECT_THROW(connection_.Execute("DELETE FROM T; DELETE FROM T"), DatabaseError);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM T"), "1");
  EXPECT_FALSE(connection_.IsLost());
}

TEST_F(Database, ACommentBehindABrokenQuoteIsNeverSent) {
  shop_.Sql("INSERT INTO T (N,TXT) VALUES (1,'a'),(2,'b')");
  const auto state = [&](const std::string& statement) {
    try {
      connection_.Execute(statement);
      return std::string("ran");
    } catch (const DatabaseError& error) {
      EXPECT_EQ(error.Statement(), statement);
      return fmt::format("{} {}", error.SqlState(), error.Native());
    }
  };
  // In the middle stands what the operator typed; "ran" is what the server makes of it within its quotes.
  const std::pair<std::string, const char*> kCases[] = {
      {"Бар № 5", "ran"},       {"#1 /* -- ", "ran"},      {"5'' #", "ran"},
      {"5\\' #", "ran"},        {"5\"` #", "ran"},         {"5' #", "42000 0"},
      {"5'' ' #", "42000 0"},   {"5\\\\' #", "42000 0"},   {"5' -- ", "42000 0"},
      {"5'--\t", "42000 0"},    {"5'--\u00A0", "42000 0"}, {"5'--\u007F", "42000 0"},
      {"5' /*", "42000 0"},     {"5'+`\\`#", "42000 0"},   {std::string("5\0", 2), "42000 0"},
      {"5'--5+'", "ran"},                                 // two minus signs
      {"5'-- -'", "42000 0"},   {"5'\"#", "42000 1064"},  // a quote that stays open: the server refuses it itself
      {"Хлеб\\", "42000 1064"},
  };
  for (const auto& [text, outcome] : kCases) {
    shop_.Sql("UPDATE T SET TXT='a'");
    EXPECT_EQ(state("UPDATE T SET TXT='" + text + "' WHERE N=1"), outcome) << text;
    EXPECT_EQ(shop_.Value("SELECT TXT FROM T WHERE N=2"), "a") << text;
  }
  EXPECT_THROW(set_.Open("SELECT N FROM T WHERE TXT='a'#'", connection_), DatabaseError);
  EXPECT_FALSE(connection_.IsLost());
}

TEST_F(Database, AFailureSaysWhatTheDriverSaid) {
  try {
    connection_.Execute("SELECT * FROM Хлеб");
    FAIL();
  } catch (const DatabaseError& error) {
    EXPECT_EQ(error.SqlState(), "42S02");
    EXPECT_EQ(error.Native(), 1146);
    EXPECT_NE(error.Text().find(".Хлеб' doesn't exist"), std::string::npos) << error.Text();
    EXPECT_EQ(error.Statement(), "SELECT * FROM Хлеб");
  }
}

TEST_F(Database, CyrillicIsKeptAsTheTerminalsKeepIt) {
  connection_.Execute("INSERT INTO T (N,TXT) VALUES (1,'Ёж № 1: «чай?» {x} ☕')");
  EXPECT_EQ(shop_.Value("SELECT HEX(TXT) FROM T"), "A8E620B920313A20ABF7E0E93FBB207B787D203F");
  set_.Open("SELECT TXT As 'Имя' FROM T", connection_);
  EXPECT_EQ(set_.FieldName(0), "Имя");
  EXPECT_EQ(set_.Field("имя").Text(), "Ёж № 1: «чай?» {x} ?");
}

TEST_F(Database, CellsOfEveryKind) {
  shop_.Sql(
      "INSERT INTO T VALUES (-7,'',  '2026-11-15 00:00:00',1234.500,0.5),(NULL,NULL,NULL,NULL,NULL),"
      "(7,'1,25','2026-11-15 08:05:00',0.125,1e10)");
  set_.Open("SELECT N,TXT,D,DEC3,F,ROUND(N/1000,3) As R FROM T", connection_);
  const RegionalFormat format;
  EXPECT_EQ(set_.Field(0).Int(), -7);
  EXPECT_FALSE(set_.IsNull(1));
  EXPECT_EQ(set_.Field(1).Text(), "");
  EXPECT_EQ(set_.Field(2).Display(format), "15.11.2026");
  EXPECT_EQ(set_.Field(3).Display(format), "1234,5");
  EXPECT_EQ(set_.Field(3).Display(format, "0.00"), "1234,50");
  EXPECT_EQ(set_.Field(4).Number(), 0.5);
  EXPECT_EQ(set_.Field(5).Display(format, "0.000"), "-0,007");
  EXPECT_THROW(set_.Field(1).Number(), TypeMismatch);

  set_.MoveNext();
  for (int field = 0; field < set_.FieldCount(); ++field) {
    EXPECT_TRUE(set_.IsNull(field));
    EXPECT_EQ(set_.Field(field).Display(format, "0.00"), "");
    EXPECT_THROW(set_.Field(field).Text(), TypeMismatch);
  }
  EXPECT_THROW(set_.Field(0).Int(), TypeMismatch);
  EXPECT_THROW(set_.Field(2).Moment(), TypeMismatch);

  set_.MoveNext();
  EXPECT_EQ(set_.Field(1).Display(format, "0.00"), "1,25");  // a number that a terminal wrote as text
  EXPECT_EQ(set_.Field(2).Moment(), (DateTime{{2026, 11, 15}, 8, 5, 0}));
  EXPECT_EQ(set_.Field(3).Int(), 0);
  EXPECT_THROW(set_.Field(6), Error);
  EXPECT_THROW(set_.Field("X"), Error);
}

TEST_F(Database, NumbersAndMomentsAtTheEndsOfTheirRange) {
  shop_.Sql("CREATE TABLE E (B bigint, U bigint unsigned, T tinyint, D datetime, DAY date, F float, M decimal(30,10))");
  shop_.Sql(
      "INSERT INTO E VALUES (-9223372036854775807-1,18446744073709551615,-128,'9999-12-31 23:59:59','2026-02-03',0.1,"
      "-12345678901234567890.0123456789),(0,9223372036854775808,0,'0000-00-00 00:00:00','1000-01-01',1234567.8,0)");
  set_.Open("SELECT * FROM E ORDER BY B", connection_);
  const char* kRows[][7] = {{"-9223372036854775808", "18446744073709551615", "-128", "9999-12-31 23:59:59",
                             "2026-02-03", "0.1", "-12345678901234567890.0123456789"},
                            {"0", "9223372036854775808", "0", "", "1000-01-01", "1234570", "0.0000000000"}};
  for (int row = 1; row <= 2; ++row) {
    for (int field = 0; field < 7; ++field) EXPECT_EQ(set_.At(row, field).Raw(), kRows[row - 1][field]);
  }
  EXPECT_EQ(set_.Field(0).Int(), std::numeric_limits<std::int64_t>::min());
  EXPECT_THROW(set_.At(2, 1).Int(), OverflowError);
  EXPECT_TRUE(set_.At(2, 3).IsNull());  // a day that never was
}

TEST_F(Database, PositionsOfASet) {
  shop_.Sql("INSERT INTO T (N) VALUES (1),(2),(3)");
  set_.Open("SELECT N FROM T ORDER BY N", connection_);
  EXPECT_EQ(set_.Bookmark(), 1);
  EXPECT_THROW(set_.Open("SELECT 1", connection_), DatabaseError);
  set_.MoveLast();
  EXPECT_EQ(set_.Field(0).Int(), 3);
  set_.MoveNext();
  EXPECT_TRUE(set_.Eof());
  EXPECT_THROW(set_.MoveNext(), Error);
  EXPECT_THROW(set_.Field(0), Error);
  set_.Move(-2);
  EXPECT_EQ(set_.Field(0).Int(), 2);
  set_.Move(-9);
  EXPECT_TRUE(set_.Bof());
  EXPECT_THROW(set_.MovePrevious(), Error);
  set_.Move(99);
  EXPECT_EQ(set_.Bookmark(), 4);
  set_.SetBookmark(2);
  EXPECT_EQ(set_.Field(0).Int(), 2);
  EXPECT_EQ(set_.At(3, 0).Int(), 3);
  EXPECT_EQ(set_.Bookmark(), 2);

  set_.Close();
  set_.Open("SELECT N FROM T WHERE N>9", connection_);
  EXPECT_TRUE(set_.Bof() && set_.Eof());
  EXPECT_EQ(set_.FieldCount(), 1);
  EXPECT_THROW(set_.MoveFirst(), Error);
  EXPECT_THROW(set_.MoveLast(), Error);
}

TEST_F(Database, ASnapshotStandsStillUntilItIsAskedAgain) {
  shop_.Sql("INSERT INTO T (N) VALUES (1)");
  set_.Open("SELECT N FROM T", connection_);
  shop_.Sql("UPDATE T SET N=5");
  shop_.Sql("INSERT INTO T (N) VALUES (6)");
  EXPECT_EQ(set_.RecordCount(), 1);
  EXPECT_EQ(set_.Field(0).Int(), 1);
  set_.Requery();
  EXPECT_EQ(set_.RecordCount(), 2);
  EXPECT_EQ(set_.Field(0).Int(), 5);
  shop_.Sql("DROP TABLE T");
  EXPECT_THROW(set_.Requery(), DatabaseError);
  EXPECT_FALSE(set_.IsOpen());
  EXPECT_EQ(set_.RecordCount(), 0);
  shop_.Sql("CREATE TABLE T (N int)");
  shop_.Sql("INSERT INTO T (N) VALUES (7)");
  set_.Requery();  // the fault is mended
  EXPECT_EQ(set_.Field(0).Int(), 7);
  set_.Close();
  EXPECT_THROW(set_.Requery(), Error);
}

TEST_F(Database, ManyRowsAndLongTexts) {
  shop_.Sql("INSERT INTO T (N,TXT) SELECT seq,CONCAT('т',seq) FROM " + test::Numbers(2501));
  set_.Open("SELECT N,TXT FROM T ORDER BY N", connection_);
  ASSERT_EQ(set_.RecordCount(), 2501);
  for (const int row : {1, 999, 1000, 1001, 2000, 2001, 2501}) {
    EXPECT_EQ(set_.At(row, 1).Text(), "т" + std::to_string(row));
  }
  set_.Close();
  set_.Open("SELECT 1,REPEAT('ю',100000),NULL,REPEAT('z',254),REPEAT('z',255),'конец'", connection_);
  EXPECT_EQ(set_.Field(1).Raw().size(), 100000U);
  EXPECT_TRUE(set_.IsNull(2));
  EXPECT_EQ(set_.Field(3).Text(), std::string(254, 'z'));
  EXPECT_EQ(set_.Field(4).Text(), std::string(255, 'z'));
  EXPECT_EQ(set_.Field(5).Text(), "конец");
}

TEST_F(Database, FindsByTheBeginningOfAText) {
  shop_.Sql("INSERT INTO T (N,TXT) VALUES (1,'Кофе'),(2,'Чай'),(3,'ЧАЙ зелёный'),(4,'100% сок'),(5,NULL)");
  set_.Open("SELECT N,TXT FROM T ORDER BY N", connection_);
  using Match = Recordset::Match;
  struct Case {
    const char* column;
    const char* value;
    Match match;
    int row;
  };
  const Case kCases[] = {{"TXT", "ча", Match::kBeginsWith, 2}, {"txt", "чай З", Match::kBeginsWith, 3},
                         {"TXT", "ай", Match::kBeginsWith, 6}, {"TXT", "100%", Match::kBeginsWith, 4},
                         {"TXT", "", Match::kBeginsWith, 1},   {"TXT", "чай", Match::kEquals, 2},
                         {"N", "4", Match::kEquals, 4},        {"n", "3.0", Match::kEquals, 3},
                         {"TXT", "КОФЕ", Match::kEquals, 1},   {"N", "44", Match::kEquals, 6},
                         {"TXT", "ко", Match::kEquals, 6},     {"N", "4.0", Match::kBeginsWith, 6}};
  for (const Case& c : kCases) {
    set_.MoveFirst();
    set_.Find(c.column, c.value, c.match);
    EXPECT_EQ(set_.Bookmark(), c.row) << c.column << c.value;
  }
  set_.SetBookmark(3);
  set_.Find("TXT", "ча", Match::kBeginsWith);  // forward, the current row included
  EXPECT_EQ(set_.Bookmark(), 3);
  set_.MoveNext();
  set_.Find("TXT", "ча", Match::kBeginsWith);
  EXPECT_TRUE(set_.Eof());
  set_.MoveFirst();
  EXPECT_THROW(set_.Find("NOBODY", "x"), Error);
}

TEST_F(Database, ObserversHearOfPositionAndRows) {
  struct Log final : RecordsetObserver {
    void PositionChanged(Recordset&) override { text += "p"; }
    void RowsChanged(Recordset&) override { text += "R"; }
    void Gone(Recordset&) override { text += "G"; }
    std::string text;
  } log;
  {
    Recordset set;
    set.AddObserver(&log);
    set.Open("SELECT 1 UNION SELECT 2", connection_);
    set.MoveNext();
    set.Requery();
    set.Close();
    set.Close();
  }
  EXPECT_EQ(log.text, "RpRRG");
}

TEST_F(Database, RefusalsOfTheServerAtOpening) {
  const DatabaseAddress own = shop_.Address();
  Connection other;
  for (const auto& [address, native] : {std::pair{DatabaseAddress{"127.0.0.254", own.account, own.schema}, 2002},
                                        {DatabaseAddress{own.host, "stranger", own.schema}, 1045},
                                        {DatabaseAddress{own.host, own.account, "zrt_no_such_schema"}, 1049}}) {
    try {
      other.Open(MainConnectionString(address));
      ADD_FAILURE() << "it opened";
    } catch (const DatabaseError& error) {
      EXPECT_EQ(error.Native(), native);
      EXPECT_EQ(error.Statement(), "");
      EXPECT_EQ(std::string(error.what()).find("41730926"), std::string::npos);
    }
    EXPECT_FALSE(other.IsOpen());
  }
  EXPECT_THROW(other.Execute("SELECT 1"), DatabaseError);
}

TEST_F(Database, ABrokenLinkIsReportedAndOpenedAgainAtTheNextActionOnce) {
  shop_.Sql("CREATE DATABASE " + shop_.Address().schema + "_away");
  connection_.Open(MainConnectionString(TestAddress(shop_.Address().schema + "_away")));
  const std::string insert = "INSERT INTO " + shop_.Address().schema + ".T (N,TXT) VALUES ";
  faults_.CutAt(1);
  EXPECT_THROW(connection_.Execute(insert + "(1,'')"), DatabaseError);
  EXPECT_TRUE(connection_.IsOpen());
  EXPECT_TRUE(connection_.IsLost());
  // Without a new action of the operator nothing is tried again.
  EXPECT_THROW(connection_.Execute(insert + "(2,'')"), DatabaseError);
  // There is no way yet.
  shop_.Sql("DROP DATABASE " + shop_.Address().schema + "_away");
  connection_.AllowReopen();
  EXPECT_THROW(connection_.Execute(insert + "(3,'')"), DatabaseError);
  EXPECT_TRUE(connection_.IsLost());
  EXPECT_EQ(connection_.ServerVersion(), "");
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM T"), "0");

  shop_.Sql("CREATE DATABASE " + shop_.Address().schema + "_away");
  connection_.AllowReopen();
  connection_.Execute(insert + "(4,REPEAT('x',60))");  // the session's mode is back, too
  EXPECT_FALSE(connection_.IsLost());
  EXPECT_EQ(shop_.Value("SELECT N FROM T"), "4");
  shop_.Sql("DROP DATABASE " + shop_.Address().schema + "_away");
}

/// What breaks off in the middle of its rows is no shorter list, whether the link is gone with it or not.
TEST_F(Database, RowsThatBreakOffAreAFailure) {
  shop_.Sql("INSERT INTO T (N,TXT) SELECT seq,REPEAT('x',50) FROM " + test::Numbers(5'000));
  EXPECT_THROW(set_.Open("SELECT TXT,IF(N=4000,(SELECT N FROM T),1) FROM T ORDER BY N", connection_), DatabaseError);
  EXPECT_FALSE(connection_.IsLost());
  set_.Open("SELECT CONNECTION_ID()", connection_);
  const std::string link = set_.Field(0).Text();
  const std::jthread killer([&] {
    while (shop_.Value("SELECT COUNT(*) FROM information_schema.PROCESSLIST WHERE STATE='User sleep' AND ID=" + link) ==
           "0") {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    shop_.Sql("KILL " + link);
  });
  set_.Close();
  EXPECT_THROW(set_.Open("SELECT TXT,IF(N=4000,SLEEP(5),1) FROM T", connection_), DatabaseError);
  EXPECT_TRUE(connection_.IsLost());
}

TEST_F(Database, AClosedConnectionIsGoneFromTheServer) {
  set_.Open("SELECT CONNECTION_ID()", connection_);
  const std::string left = "SELECT COUNT(*) FROM information_schema.PROCESSLIST WHERE ID=" + set_.Field(0).Text();
  EXPECT_EQ(shop_.Value(left), "1");
  connection_.Close();
  for (int i = 0; i < 200 && shop_.Value(left) != "0"; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_EQ(shop_.Value(left), "0");
}

TEST_F(Database, ThreeWaysOfASession) {
  const test::FixedClock clock;
  Session session(shop_.Address(), clock, {});
  EXPECT_THROW(session.Pool(), DatabaseError);
  EXPECT_THROW(session.Write("DELETE FROM T"), DatabaseError);
  session.Connect();
  EXPECT_EQ(session.MainConnection.ConnectionTimeout, 1800);
  session.Write("INSERT INTO T (N) VALUES (1),(2)");
  const Recordset highest = session.ReadOne("SELECT MAX(N) FROM T");
  const Recordset lowest = session.ReadOne("SELECT MIN(N) FROM T");
  EXPECT_EQ(highest.Field(0).Int(), 2);  // each read keeps its own row
  EXPECT_EQ(lowest.Field(0).Int(), 1);
  Recordset& sales = session.Pool().RsSales;
  session.BindSet(sales, "SELECT N FROM T ORDER BY N");
  Session::ShowLastRow(sales);
  EXPECT_EQ(sales.Field(0).Int(), 2);
  session.BindSet(sales, "SELECT N FROM T WHERE N>5");
  Session::ShowLastRow(sales);
  EXPECT_EQ(sales.RecordCount(), 0);
  session.Disconnect();
  session.Disconnect();
  EXPECT_FALSE(session.IsConnected());
}

}  // namespace
}  // namespace zrt
