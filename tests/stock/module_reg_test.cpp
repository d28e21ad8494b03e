#include "stock/module_reg.h"

#include <fmt/format.h>

#include <string>
#include <vector>

#include "core/errors.h"
#include "support/program_test.h"

namespace zrt {
namespace {

using test::ProgramTest;
using Texts = std::vector<std::string>;

std::string Question(int documents) {
  return "Документ проведён 'задним числом'!\n\rперепровести последующие за ним " + std::to_string(documents) +
         " документов?";
}

struct Line {
  int cod;
  int kol;
  int rez = 0;
  int summ = 0;
};

class Register : public ProgramTest {
 protected:
  Register() { Start(); }

  /// A saved document, not posted. `time` is a time of 10 November 2026.
  void Save(int doc, const std::string& time, const std::vector<Line>& lines, int kind = 1) {
    const std::string date = Date(time);
    shop_.Sql(fmt::format("INSERT INTO JOURNAL (ID,DTYPE,DATEDOC,SUMM,REZ) VALUES ({},'-','{}',0,0)", doc, date));
    for (const Line& line : lines) {
      shop_.Sql(
          fmt::format("INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,KARD,DATEDOC,RUN,REZ) VALUES "
                      "({},{},{},{},{},0,0,'{}',0,{})",
                      doc, kind, line.cod, line.kol, line.summ, date, line.rez));
    }
  }

  static std::string Date(const std::string& time) { return "2026-11-10 " + time; }

  void Post(int doc, const std::string& time) { Stock().RunDocRegistr(doc, true, Date(time)); }
  void Unpost(int doc, const std::string& time) { Stock().RunDocRegistr(doc, false, Date(time)); }

  /// "RUN/OSTKOL" of the document's rows in the order of their writing.
  std::vector<std::string> Balances(int doc) {
    return shop_.Column(fmt::format("SELECT CONCAT(RUN,'/',OSTKOL) FROM REGISTR WHERE DOC={} ORDER BY ID", doc));
  }
  std::string Posted(int doc) { return shop_.Value(fmt::format("SELECT RUN FROM JOURNAL WHERE ID={}", doc)); }

  ModuleReg& Stock() { return app_->Stock; }
};

TEST_F(Register, StatementsOfAPostingAndOfWhatFollowsIt) {
  Save(1, "09:00:00", {{7, 1000}});
  Save(3, "11:00:00", {{7, 500}});
  Post(1, "09:00:00");
  Post(3, "11:00:00");
  Save(2, "10:00:00", {{7, 200}, {7, 300}, {8, 100}, {7, 50}});
  const std::string link_to_2 = "UPDATE REGISTR SET DOCNEXT=2, DATENEXT='2026-11-10 10:00:00' WHERE ID=" +
                                shop_.Value("SELECT ID FROM REGISTR WHERE DOC=1");
  faults_.Forget();
  desktop_.Expect(Question(1), BoxAnswer::kOk, BoxIcon::kQuestion);
  Post(2, "10:00:00");

  const std::string at10 = " AND DATEDOC<='2026-11-10 10:00:00' ORDER BY DATEDOC DESC LIMIT 1";
  const std::string at11 = " AND DATEDOC<='2026-11-10 11:00:00' ORDER BY DATEDOC DESC LIMIT 1";
  const std::string link = "SELECT ID FROM REGISTR WHERE RUN=1 AND COD=";
  const std::string sum = "SELECT SUM(KOL) FROM REGISTR WHERE RUN=1 AND COD=";
  EXPECT_EQ(
      faults_.Statements(),
      (Texts{"SELECT COD FROM REGISTR WHERE DOC=2",
             // A product that comes again after another is linked and summed again, without harm.
             link + "7" + at10, link_to_2, link + "8" + at10, link + "7" + at10, link_to_2,
             "UPDATE REGISTR SET RUN=1 WHERE DOC=2 AND REZ=0", "UPDATE JOURNAL SET RUN='OK' WHERE ID=2",
             sum + "7 AND DATEDOC <= '2026-11-10 10:00:00'", "UPDATE REGISTR SET OSTKOL=1550 WHERE COD=7 AND DOC=2",
             sum + "8 AND DATEDOC <= '2026-11-10 10:00:00'", "UPDATE REGISTR SET OSTKOL=100 WHERE COD=8 AND DOC=2",
             sum + "7 AND DATEDOC <= '2026-11-10 10:00:00'", "UPDATE REGISTR SET OSTKOL=1550 WHERE COD=7 AND DOC=2",
             "SELECT ID,DATEDOC FROM JOURNAL WHERE RUN IS NOT NULL AND DATEDOC >= '2026-11-10 10:00:00' AND "
             "ID<>2 ORDER BY DATEDOC ASC",
             "SELECT COD FROM REGISTR WHERE DOC=3", "UPDATE REGISTR SET DOCNEXT=NULL, DATENEXT=NULL WHERE DOCNEXT=3",
             "UPDATE REGISTR SET RUN=0 WHERE DOC=3", "UPDATE JOURNAL SET RUN=NULL WHERE ID=3",
             "UPDATE REGISTR SET OSTKOL=0 WHERE DOC=3", link + "7" + at11,
             // The newest row before it is one of the three of document 2; which, the server decides.
             faults_.Statements().size() > 21 ? faults_.Statements()[21] : "",
             "UPDATE REGISTR SET RUN=1 WHERE DOC=3 AND REZ=0", "UPDATE JOURNAL SET RUN='OK' WHERE ID=3",
             sum + "7 AND DATEDOC <= '2026-11-10 11:00:00'", "UPDATE REGISTR SET OSTKOL=2050 WHERE COD=7 AND DOC=3"}));
  EXPECT_EQ(Balances(2), (Texts{"1/1550", "1/1550", "1/100", "1/1550"}));
  EXPECT_EQ(
      shop_.Column("SELECT DISTINCT CONCAT(DOCNEXT,' ',DATENEXT) FROM REGISTR WHERE DOC=2 AND DOCNEXT IS NOT NULL"),
      Texts{"3 2026-11-10 11:00:00"});

  faults_.Forget();
  desktop_.Expect(Question(1), BoxAnswer::kCancel, BoxIcon::kQuestion);  // the same words although nothing was posted
  Unpost(2, "10:00:00");
  EXPECT_EQ(
      faults_.Statements(),
      (Texts{"SELECT COD FROM REGISTR WHERE DOC=2", "UPDATE REGISTR SET DOCNEXT=NULL, DATENEXT=NULL WHERE DOCNEXT=2",
             "UPDATE REGISTR SET RUN=0 WHERE DOC=2 AND REZ=0", "UPDATE JOURNAL SET RUN=NULL WHERE ID=2",
             "UPDATE REGISTR SET OSTKOL=0 WHERE DOC=2",
             "SELECT ID,DATEDOC FROM JOURNAL WHERE RUN IS NOT NULL AND DATEDOC >= '2026-11-10 10:00:00' AND "
             "ID<>2 ORDER BY DATEDOC ASC"}));
  EXPECT_EQ(Balances(2), (Texts{"0/0", "0/0", "0/0", "0/0"}));
  // The price of cancelling: the later document, and with it the product, keeps the old balance.
  EXPECT_EQ(Stock().GetOstNow(7), 2050);

  // Where the later one breaks off it stands as not posted, and no further press finds it: the operator is told.
  desktop_.Expect(Question(1), BoxAnswer::kOk);
  faults_.FailAt(20);
  try {
    Post(2, "10:00:00");
    ADD_FAILURE();
  } catch (const DatabaseError& error) {
    EXPECT_EQ(
        error.Task(),
        "Прервано на документе №3 от 10.11.2026 11:00:00: если в журнале он без \"OK\", откройте его и проведите.");
  }
  EXPECT_EQ(Posted(3), "NULL");
}

TEST_F(Register, ProductsThatKeepNoStock) {
  Save(1, "09:00:00", {{7, -1000, 1}, {8, -500, 1}});
  Post(1, "09:00:00");
  EXPECT_EQ(Posted(1), "OK");
  EXPECT_EQ(Balances(1), (Texts{"0/0", "0/0"}));
  EXPECT_EQ(Stock().GetOstNow(7), 0);

  // A row that isn't posted takes the product's balance along when there is one; no reader looks at it.
  Save(2, "10:00:00", {{7, -300, 0}, {7, -100, 1}});
  Post(2, "10:00:00");
  EXPECT_EQ(Balances(2), (Texts{"1/-300", "0/-300"}));
  EXPECT_EQ(Stock().GetOstNow(7), -300);

  // A document without rows changes nothing, not even its own head, but asks about the later ones.
  Save(3, "09:30:00", {});
  desktop_.Expect(Question(1), BoxAnswer::kOk);
  Post(3, "09:30:00");
  EXPECT_EQ(Posted(3), "NULL");
}

TEST_F(Register, LaterDocumentsOfOtherKindsAndMoments) {
  Save(1, "09:00:00", {{7, 1000}});
  Post(1, "09:00:00");
  // A price change is posted without rows in the register; an invoice dated at midnight prints without a time.
  shop_.Sql(
      "INSERT INTO JOURNAL (ID,DTYPE,DATEDOC,SUMM,RUN,REZ) VALUES (2,'Переоценка','2026-11-10 10:00:00',0,'OK',0),"
      "(3,'-','2026-11-11 00:00:00',0,'OK',0)");
  shop_.Sql(
      "INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,KARD,DATEDOC,RUN,REZ) VALUES "
      "(3,1,7,500,0,1500,0,'2026-11-11 00:00:00',1,0)");
  Save(4, "08:00:00", {{7, 20}});
  desktop_.Expect(Question(3), BoxAnswer::kOk);
  Post(4, "08:00:00");
  EXPECT_EQ(Posted(2), "OK");
  EXPECT_EQ(Balances(1), Texts{"1/1020"});
  EXPECT_EQ(Balances(3), Texts{"1/1520"});
  EXPECT_EQ(shop_.Value("SELECT DATENEXT FROM REGISTR WHERE DOC=1"), "2026-11-11 00:00:00");
}

TEST_F(Register, WhatTheRegisterAnswers) {
  struct Posting {
    int kind;
    const char* time;
    Line line;
  };
  // Kind 1 is an incoming invoice, 6 a transfer in; the sums of 2,5 and 3,5 thousandths a unit fall on the even one.
  const Posting kPostings[] = {{1, "08:00:00", {1, 2000, 0, 5}},          {1, "09:00:00", {1, 2000, 0, 7}},
                               {6, "10:00:00", {1, 1000, 0, 90000}},      {1, "08:00:00", {2, 3000, 0, 1000}},
                               {3, "11:00:00", {2, -1000, 0, -500}},      {1, "08:00:00", {3, 0, 0, 500}},
                               {1, "12:00:00", {4, 100000, 0, 12000000}}, {1, "08:00:00", {5, 2000, 0, 5}}};
  int doc = 0;
  for (const Posting& posting : kPostings) {
    Save(++doc, posting.time, {posting.line}, posting.kind);
    shop_.Sql(fmt::format("UPDATE REGISTR SET RUN=1,OSTKOL={} WHERE DOC={}", posting.line.kol, doc));
  }
  Save(++doc, "13:00:00", {{2, 777, 0, 777000}});  // not posted: nobody sees it

  EXPECT_EQ(Stock().GetPurchasePrice(1), 4) << "3,5 becomes 4; the dearer transfer doesn't count";
  EXPECT_EQ(Stock().GetPurchasePrice(5), 2) << "2,5 becomes 2";
  EXPECT_EQ(Stock().GetPurchasePrice(2), 333);
  EXPECT_EQ(Stock().GetPurchasePrice(3), 0) << "a line without quantity has no price";
  EXPECT_EQ(Stock().GetPurchasePrice(4), 120000);
  EXPECT_EQ(Stock().GetPurchasePrice(99), 0);

  EXPECT_EQ(Stock().GetOstNow(1), 1000);
  EXPECT_EQ(Stock().GetOstNow(2), -1000);
  EXPECT_EQ(Stock().GetOstNow(99), 0);
  EXPECT_EQ(Stock().GetOstAtDate(1, Date("09:00:00")), 2000) << "that very second counts";
  EXPECT_EQ(Stock().GetOstAtDate(1, Date("07:59:59")), 0);
  EXPECT_EQ(std::to_string(Stock().GetRegistrIdAtDate(1, Date("09:59:59"))),
            shop_.Value("SELECT ID FROM REGISTR WHERE DOC=2"));
  EXPECT_EQ(Stock().GetRegistrIdAtDate(1, Date("07:00:00")), 0);
  // A date without a time, as a moment at midnight prints, is that midnight.
  EXPECT_EQ(Stock().GetOstAtDate(1, "2026-11-11 "), 1000);

  shop_.Sql(
      "INSERT INTO TOVAR (COD,COD1,NAME,N6) VALUES "
      "(1,1,'доставка',0),(2,1,'чай',NULL),(3,1,'чай',NULL),(3,2,'чай',NULL)");
  EXPECT_EQ(Stock().GetTovarN6(1), 1);
  EXPECT_EQ(Stock().GetTovarN6(2), 0);
  EXPECT_EQ(Stock().GetTovarN6(3), 0);
  EXPECT_EQ(Stock().GetTovarN6(99), 0);

  faults_.FailAt(1);
  EXPECT_EQ(Stock().GetOstNow(4), 0) << "the balance alone answers 0 when its query fails";
  faults_.FailAt(1);
  EXPECT_THROW(Stock().GetOstAtDate(4, Date("13:00:00")), DatabaseError);
  shop_.Sql("UPDATE REGISTR SET SUMM=2147483647,KOL=1 WHERE COD=4");
  EXPECT_THROW(Stock().GetPurchasePrice(4), OverflowError);
}

// The catalogue's copy of the balances, over the button in the main window.

class Catalogue : public ProgramTest {
 protected:
  Catalogue() {
    shop_.Sql("UPDATE CONST SET N8=8 WHERE COD=5");
    shop_.Sql(
        "INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE,N6) VALUES (1,1,'Чай',1,1,100,NULL),(1,2,'Чай',1,1,100,NULL),"
        "(2,1,'Доставка',5,5,100,0),(3,1,'Вода',7,7,100,NULL)");
    shop_.Sql(
        "INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,DATEDOC,RUN,REZ) VALUES "
        "(1,1,1,9000,0,9000,'2026-11-01 08:00:00',1,0),(1,1,2,4000,0,4000,'2026-11-01 08:00:00',1,0),"
        "(2,1,1,9000,0,18000,'2026-11-02 08:00:00',0,0)");
    shop_.Sql(
        "INSERT INTO PROD (COD,KOL,PRISE,DATETIME,TER,NUM) VALUES (1,1000,1,'2026-11-12 08:00:00',1,1),"
        "(1,500,1,'2026-11-13 07:59:59',1,2),(1,50,1,'2026-11-13 08:00:00',1,3),(1,5,1,'2026-11-12 07:59:59',1,4),"
        "(2,2000,1,'2026-11-12 12:00:00',1,5)");
    Start("sprav");
  }

  void Refresh() { Click(app_->Main.Catalogue.CmdRefrTov); }
  Texts Stock() { return shop_.Column("SELECT CONCAT(COD,' ',OST,' ',KOL) FROM TOVAR ORDER BY ID"); }
};

TEST_F(Catalogue, BalancesAndSalesOfTheShiftReachTheTerminals) {
  clock_.Set({{2026, 11, 12}, 15, 0, 0});
  Refresh();
  // Both rows of a code, and products without stock like all others.
  EXPECT_EQ(Stock(), (Texts{"1 9000 1500", "1 9000 1500", "2 4000 2000", "3 0 0"}));
  EXPECT_FALSE(app_->Main.Catalogue.ProgressBar1.Visible());
  EXPECT_EQ(app_->Main.Catalogue.ProgressBar1.Max(), 3);
  EXPECT_EQ(app_->Main.Catalogue.DataGrid1[0].CellText(3, "Value"), "7,500");

  // Nobody has chosen the hour yet: the day begins at midnight.
  shop_.Sql("UPDATE CONST SET N8=NULL WHERE COD=5");
  Refresh();
  EXPECT_EQ(Stock()[0], "1 9000 1005");
  shop_.Sql("UPDATE CONST SET N8=8 WHERE COD=5");

  // Before the shift's hour of a new day nothing counts as sold. What the list lacks, added by a terminal's own means,
  // is only put to zero.
  clock_.Set({{2026, 11, 14}, 3, 0, 0});
  shop_.Sql("INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE) VALUES (9,1,'Новинка',70,80,100)");
  faults_.Forget();
  Refresh();
  EXPECT_EQ(Stock(), (Texts{"1 9000 0", "1 9000 0", "2 4000 0", "3 0 0", "9 70 0"}));
  EXPECT_EQ(faults_.Statements().size(), 2 + 3 * 3 + 1U);

  // A failure on the way leaves no bar behind; an empty catalogue has nothing to refresh.
  faults_.FailAt(5);
  desktop_.ExpectRuntimeError();
  Refresh();
  EXPECT_FALSE(app_->Main.Catalogue.ProgressBar1.Visible());
  shop_.Sql("DELETE FROM TOVAR");
  Click(app_->Main.Catalogue.CmdReqr);
  faults_.Forget();
  Refresh();
  EXPECT_TRUE(faults_.Statements().empty());
}

}  // namespace
}  // namespace zrt
