// The check of a shop: silent about a whole one that lived through all that its rules allow, and one row for each way
// in which a shop can be broken.

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "check/shop_check.h"
#include "documents/documents_shop.h"

namespace zrt {
namespace {

using check::Fault;
using check::Findings;
using test::DocumentsTest;

class Check : public DocumentsTest {
 protected:
  Check() {
    for (const char* statement : {
             "UPDATE HOTKEYS SET CODE=4 WHERE ID=2401",
             "INSERT INTO KASSA (OPER,SUM1,TER,NUM,N4,DAT) VALUES ('Заказ',1,1,7,3,'2026-11-11 12:00:00'),"
             "('Заказ',1,NULL,8,3,'2026-11-11 12:00:00')",
             "INSERT INTO PROD (COD,NAME,KOL,PRISE,SKID,SUM2,TER,REZ,NUM,N4,DATETIME) VALUES "
             "(1,'Чай',2000,12000,0,24000,1,0,7,3,'2020-11-11 12:00:00')",
         }) {
      shop_.Sql(statement);
    }
    Receive(1, 10'000, 5'000, 1);                  // 1
    Receive(2, 20'000, 7'500, 1);                  // 2
    Give(DocType::kOutgoing, 1, 3'000, 9'000, 2);  // 3
    Give(DocType::kOutgoing, 3, 1'000, 9'000, 3);  // 4: a service, which keeps no stock
    Give(DocType::kWriteOff, 2, 1'000, 9'000, 4);  // 5
    Give(DocType::kTransferIn, 1, 500, 9'000, 5);  // 6
    Give(DocType::kInventory, 1, 5'000, 0, 6);     // 7
    Give(DocType::kPriceChange, 1, 0, 99'000, 7);  // 8
    shop_.Sql("UPDATE TOVAR SET OST=IF(COD=1,5000,19000) WHERE COD<3");
    // Whatever numbers the server gave them.
    for (int document = 1; document <= 8; ++document) {
      shop_.Sql(fmt::format("SET @d{}=(SELECT ID FROM JOURNAL ORDER BY ID LIMIT {},1)", document, document - 1));
    }
  }

  Findings Look() {
    Connection connection;
    connection.Open(MainConnectionString(shop_.Address()));
    return check::CheckShop(connection);
  }
  static std::vector<Fault> Found(const Findings& findings) {
    std::vector<Fault> faults;
    for (int i = 0; i < static_cast<int>(Fault::kCount); ++i) {
      if (findings.Count(static_cast<Fault>(i)) > 0) faults.push_back(static_cast<Fault>(i));
    }
    return faults;
  }
};

TEST_F(Check, AWholeShopIsContent) {
  const Findings findings = Look();
  EXPECT_TRUE(findings.IsWhole()) << findings.Report();
  EXPECT_EQ(Found(findings), std::vector<Fault>{}) << findings.Report();
  EXPECT_EQ(findings.Report(), "Всё сходится.\n");
  shop_.Sql("ALTER TABLE DKHOLDER CONVERT TO CHARACTER SET utf8mb4");
  EXPECT_EQ(Look().Where(Fault::kCharacterSet),
            std::vector<std::string>{"ALTER TABLE `DKHOLDER` CONVERT TO CHARACTER SET latin1 COLLATE latin1_bin;"});
  shop_.Sql("UPDATE HOTKEYS SET CODE=99");
  const Findings keys = Look();
  EXPECT_EQ(keys.Where(Fault::kKeyWithoutProduct).size(), 20U) << "the first are named, the others counted";
  EXPECT_TRUE(keys.Report().find("и ещё " + shop_.Value("SELECT COUNT(*)-20 FROM HOTKEYS") + "\n") != std::string::npos)
      << keys.Report();
  shop_.Sql("UPDATE HOTKEYS SET CODE=1");
  shop_.Sql("INSERT INTO DOCINVENT (COD,DOC) VALUES (1,-1)");
  EXPECT_EQ(Look().Where(Fault::kOpenDocument), std::vector<std::string>{"инвентаризация"});
  shop_.Sql("DROP TABLE REGISTR");  // a shop that keeps no register
  EXPECT_TRUE(Look().IsWhole());
  shop_.Sql("UPDATE TOVAR SET BARCODE='4820000000024' WHERE COD=1");
  EXPECT_EQ(Look().Where(Fault::kDoubledBarcode), std::vector<std::string>{"4820000000024: товары 1 и 2"});
}

TEST_F(Check, OneRowForEachFault) {
  struct Broken {
    const char* name;
    std::vector<std::string> statements;
    std::vector<Fault> faults;
  };
  const Broken kBroken[] = {
      {"a head's date is lost", {"UPDATE JOURNAL SET DATEDOC='0000-00-00' WHERE ID=@d8"}, {Fault::kNoDate}},
      {"a row's date is lost",
       {"UPDATE REGISTR SET DATEDOC=NULL,OSTKOL=-1000 WHERE DOC=@d5", "UPDATE REGISTR SET OSTKOL=19000 WHERE DOC=@d2",
        "UPDATE REGISTR SET DOCNEXT=NULL,DATENEXT=NULL WHERE COD=2"},
       {Fault::kNoDate, Fault::kOtherDate}},
      {"a kind that isn't one",
       {"UPDATE JOURNAL SET DTYPE='Отчёт' WHERE ID=@d8"},
       {Fault::kUnknownKind, Fault::kOtherKind}},
      {"a state that isn't one", {"UPDATE JOURNAL SET RUN='1' WHERE ID=@d6"}, {Fault::kUnknownState}},
      {"a head is gone", {"DELETE FROM JOURNAL WHERE ID=@d4"}, {Fault::kRowsWithoutHead}},
      {"the head of a price change is gone", {"DELETE FROM JOURNAL WHERE ID=@d8"}, {Fault::kRowsWithoutHead}},
      {"the head of an inventory is gone",
       {"DELETE FROM JOURNAL WHERE ID=@d7"},
       {Fault::kRowsWithoutHead, Fault::kLinkToDeleted}},
      {"another kind's rows", {"UPDATE REGISTR SET DOCTYP=2 WHERE DOC=@d5"}, {Fault::kOtherKind}},
      {"another date", {"UPDATE REGISTR SET DATEDOC='2026-11-04 12:00:01' WHERE DOC=@d5"}, {Fault::kOtherDate}},
      {"the wrong way",
       {"UPDATE REGISTR SET KOL=1000,OSTKOL=21000 WHERE DOC=@d5", "UPDATE TOVAR SET OST=21000 WHERE COD=2"},
       {Fault::kWrongSign}},
      {"posted, and the rows are lost",
       {"DELETE FROM REGISTR WHERE DOC=@d4"},
       {Fault::kPostedWithoutRows, Fault::kHeadSum}},
      {"posted half-way",
       {"UPDATE REGISTR SET RUN=0,OSTKOL=0 WHERE DOC=@d6"},
       {Fault::kPostedHalf, Fault::kStaleBalance}},
      {"unposted half-way", {"UPDATE JOURNAL SET RUN=NULL WHERE ID=@d7"}, {Fault::kPostedRowsOfUnposted}},
      {"a balance is left behind",
       {"UPDATE REGISTR SET RUN=0 WHERE DOC=@d5", "UPDATE JOURNAL SET RUN=NULL WHERE ID=@d5"},
       {Fault::kBalanceWithoutPosting, Fault::kOldBalanceAtTills}},
      {"a service is posted", {"UPDATE REGISTR SET RUN=1,OSTKOL=-1000 WHERE DOC=@d4"}, {Fault::kNoStockPosted}},
      {"the balance was never written",
       {"UPDATE REGISTR SET OSTKOL=0 WHERE DOC=@d7"},
       {Fault::kWrongBalance, Fault::kOldBalanceAtTills}},
      {"a balance leaves its own document out",
       {"UPDATE REGISTR SET OSTKOL=OSTKOL-KOL WHERE DOC=@d5"},
       {Fault::kWrongBalance, Fault::kOldBalanceAtTills}},
      {"a balance is wrong in the middle",
       {"UPDATE REGISTR SET OSTKOL=OSTKOL+1 WHERE DOC=@d3"},
       {Fault::kWrongBalance}},
      {"a balance of the last product is wrong",
       {"UPDATE REGISTR SET COD=4 WHERE COD=2", "UPDATE REGISTR SET OSTKOL=OSTKOL-1 WHERE DOC=@d2",
        "UPDATE TOVAR SET OST=19000 WHERE COD=4"},
       {Fault::kWrongBalance}},
      {"a line is lost", {"UPDATE JOURNAL SET SUMM=SUMM+5000 WHERE ID=@d1"}, {Fault::kHeadSum}},
      {"lines are doubled",
       {"INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,KARD,DATEDOC,RUN,REZ) "
        "SELECT DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,KARD,DATEDOC,RUN,REZ FROM REGISTR WHERE DOC=@d4"},
       {Fault::kHeadSum}},
      {"a count changed under a posted head", {"UPDATE DOCINVENT SET KOL=KOL+1000"}, {Fault::kHeadSum}},
      {"a link to another product's document", {"UPDATE REGISTR SET DOCNEXT=@d5 WHERE DOC=@d1"}, {Fault::kWrongLink}},
      {"a link backwards",
       {"UPDATE REGISTR SET DOCNEXT=@d1,DATENEXT=(SELECT DATEDOC FROM JOURNAL WHERE ID=@d1) WHERE DOC=@d6"},
       {Fault::kWrongLink}},
      {"no receipt", {"DELETE FROM KASSA"}, {Fault::kSoldWithoutReceipt}},
      {"a barcode twice", {"UPDATE TOVAR SET BARCODE='4820000000024' WHERE COD=1"}, {Fault::kDoubledBarcode}},
      {"a backdated invoice, and nobody wants the later ones posted again",
       {"INSERT INTO JOURNAL (ID,DTYPE,DATEDOC,SUMM,RUN,REZ) VALUES (1000000,'Приходная накладная','2026-11-02 "
        "15:00:00',20000,'OK',0)",
        "INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,KARD,DATEDOC,RUN,REZ) VALUES "
        "(1000000,1,1,4000,20000,11000,0,'2026-11-02 15:00:00',1,0)"},
       {Fault::kStaleBalance}},
      {"a count changed after its document was saved",
       {"UPDATE JOURNAL SET RUN=NULL WHERE ID=@d7", "UPDATE REGISTR SET RUN=0,OSTKOL=0 WHERE DOC=@d7",
        "UPDATE TOVAR SET OST=7500 WHERE COD=1", "UPDATE DOCINVENT SET KOL=KOL+1000"},
       {Fault::kCountsNotSaved}},
      {"a key without its product", {"UPDATE HOTKEYS SET CODE=99 WHERE ID=2401"}, {Fault::kKeyWithoutProduct}},
      {"the server's own character set", {"ALTER DATABASE CHARACTER SET utf8mb4"}, {Fault::kCharacterSet}},
      {"not told to the tills", {"UPDATE TOVAR SET OST=1 WHERE COD=2"}, {Fault::kOldBalanceAtTills}},
      {"an open document", {"INSERT INTO DOCUMENT (COD,TYP) VALUES (1,3)"}, {Fault::kOpenDocument}},
      {"an open inventory", {"INSERT INTO DOCINVENT (COD,DOC) VALUES (1,-1)"}, {Fault::kOpenDocument}},
  };
  const char* kTables[] = {"JOURNAL", "REGISTR", "DOCUMENT", "DOCINVENT", "DOCPRICE", "TOVAR", "HOTKEYS", "KASSA"};
  for (const char* table : kTables) shop_.Sql(fmt::format("CREATE TABLE WAS_{0} AS SELECT * FROM {0}", table));
  const std::set<Fault> allowed = {Fault::kKeyWithoutProduct, Fault::kStaleBalance,      Fault::kCountsNotSaved,
                                   Fault::kLinkToDeleted,     Fault::kOldBalanceAtTills, Fault::kOpenDocument,
                                   Fault::kCharacterSet};
  for (const Broken& broken : kBroken) {
    for (const std::string& statement : broken.statements) shop_.Sql(statement);
    const Findings findings = Look();
    EXPECT_EQ(Found(findings), broken.faults) << broken.name << "\n" << findings.Report();
    EXPECT_EQ(findings.IsWhole(), std::ranges::all_of(broken.faults, [&](Fault one) { return allowed.contains(one); }))
        << broken.name;
    for (const Fault fault : broken.faults) {
      const std::string line =
          fmt::format("{} {}: ", allowed.contains(fault) ? "ЗАМЕЧАНИЕ." : "ОШИБКА.", check::TextOf(fault).title);
      EXPECT_TRUE(findings.Report().find(line) != std::string::npos) << line << "\n" << findings.Report();
    }
    shop_.Sql("ALTER DATABASE CHARACTER SET latin1 COLLATE latin1_bin");
    for (const char* table : kTables) {
      shop_.Sql(fmt::format("DELETE FROM {}", table));
      shop_.Sql(fmt::format("INSERT INTO {0} SELECT * FROM WAS_{0}", table));
    }
  }
}

}  // namespace
}  // namespace zrt
