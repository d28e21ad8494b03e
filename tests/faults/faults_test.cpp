// Every action of more than one statement, broken at each of them: by a server that refuses the statement, by a link
// that is cut there, by one that is cut before the answer comes. Whatever fails, the program lives, one box comes at
// most, the shop is as the first statements left it, and the same action once more ends where it would have ended, or
// where its row says.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "documents/documents_shop.h"
#include "faults/fault_run.h"
#include "platform/workbook.h"

namespace zrt::test {
namespace {

// What the same once more makes of an action that is in already.
constexpr const char* kTwice = "one that is in comes once more";
constexpr const char* kOver = "what is written is over, even if what is shown can't be read again";
constexpr const char* kReadFirst = "the list comes first when it couldn't be read";

const std::vector<std::string> kShop = {
    "UPDATE CONST SET N8=8 WHERE COD=5",
    kFourProducts,
    "INSERT INTO DISCOUNT (BARCODE,TOTAL,LASTCASH,PROZ,REZ) VALUES ('1001',50000,'12.11.2026',5,1),"
    "('1002',0,'',101,2)",
    "INSERT INTO DKHOLDER (ID,CARD,NAME,FNAME,ADRES,TEL) VALUES (2,'1002','Анна','Анна','Ленина 1','22')",
    "INSERT INTO TOTALSKID (ID,CARD,TOV,PROZ,TOTAL) VALUES (1,101,0,3,0),(2,101,1,5,100000),(3,102,0,7,0)",
    "INSERT INTO KLIENT (COD,NAME,TOTAL,SUM1,DATETIME,NUM) VALUES (1,'Анна',0,0,'',1),(2,'Пётр',0,0,'',2)",
    "INSERT INTO SPION VALUES (1,'Чай','1,000','10,00','11.11.2026 10:00:00',1,5,7)",
    "INSERT INTO CHECK3 (COD,NAME,KOL,PRISE,COST) VALUES (1,'Чай',1.5,20,30),(2,'Вино',1,9,9)",
    "INSERT INTO AKZMARK VALUES (1,'22N',1,1,'2026-11-01 10:00:00')",
    "UPDATE TOVAR SET T1='ТОВАР',UKT='2203'",
    "UPDATE HOTKEYS SET CODE=1 WHERE ID IN (101,103,131,201,1301)",
    "UPDATE HOTKEYS SET CODE=2 WHERE ID IN (105,130,132,202,1302)",
    "INSERT INTO PROD (COD,NAME,KOL,PRISE,SKID,SUM2,REZ,DATETIME,TER,NUM,PERS,N4) VALUES "
    "(1,'Чай',2000,120500,0,241000,0,'2026-11-11 09:00:00',1,1,1,3),"
    "(2,'Вино',500,950000,0,475000,0,'2026-11-11 13:00:00',1,1,1,3),"
    "(1,'Чай',1000,120500,0,120500,0,'2026-11-12 09:00:00',1,2,1,3)",
    "INSERT INTO KASSA (OPER,SUM1,SKID,SUM2,TER,PERS,DAT,TIM,NUM,N4) VALUES "
    "('Заказ',716,0,716,1,1,'2026-11-11 09:00:00','2026-11-11 13:30:00',1,3),"
    "('Заказ',120.5,0,120.5,1,1,'2026-11-12 09:00:00','2026-11-12 09:30:00',2,3)",
    "UPDATE PROD SET UKT='2203'",
};

// The documents of the shop, by their places in the journal.
const std::vector<std::string> kDocuments = {
    // 1 to 3: posted, so that what is posted before them asks about them
    "day 1; Form2.mnuDocPN; pick 1 1 100000 80000; pick 1 2 50000 700000; frmDocPrN.RUNButton; frmDocPrN.CancelButton",
    "day 6; Form2.mnuDocPERplus; pick 6 1 10000 90000; frmDocPERplus.RUNButton; frmDocPERplus.CancelButton",
    "day 3; Form2.mnuDocSP; pick 3 1 5000 0; pick 3 3 1000 9000; frmDocSP.RUNButton; frmDocSP.CancelButton",
    // 4 to 10: saved
    "day 8; Form2.mnuDocPN; pick 1 1 1000 81000; pick 1 2 2000 710000; frmDocPrN.CancelButton",
    "day 2; Form2.mnuDocRN; pick 2 1 1000 120000; pick 2 2 1000 950000; pick 2 3 1000 100000; frmDocRhN.CancelButton",
    "day 8; Form2.mnuDocSP; pick 3 2 1000 0; pick 3 1 2000 0; frmDocSP.CancelButton",
    "day 9; Form2.mnuDocIN; pick 4 1 90000 0; pick 4 2 48000 0; frmDocIN.CancelButton",
    "day 9; Form2.mnuPereozenk; pick 5 1 0 130000; pick 5 2 0 990000; frmDocPRC.CancelButton",
    "day 4; Form2.mnuDocPERminus; pick 7 1 3000 0; frmDocPERmin.CancelButton",
    "day 10; Form2.mnuDocPERplus; pick 6 2 3000 0; frmDocPERplus.CancelButton",
    "day 12",
};

/// A document that is posted anew after an earlier one counts as not posted from the moment that it is taken out; when
/// that breaks off, its own posting puts it right. The journal shows it without "OK".
constexpr const char* kLaterOnesToo =
    "{}; open 3; frmDocSP.RUNButton; frmDocSP.CancelButton; open 2; frmDocPERplus.RUNButton; "
    "frmDocPERplus.CancelButton";

struct LineForm {
  const char* menu;
  const char* form;
  int code;
  int saved;       ///< the saved document of the kind
  bool backdated;  ///< it is older than posted ones
};
constexpr LineForm kLineForms[] = {{"mnuDocPN", "frmDocPrN", 1, 4, false},
                                   {"mnuDocRN", "frmDocRhN", 2, 5, true},
                                   {"mnuDocSP", "frmDocSP", 3, 6, false},
                                   {"mnuDocPERplus", "frmDocPERplus", 6, 10, false},
                                   {"mnuDocPERminus", "frmDocPERmin", 7, 9, true}};

std::vector<Action> LineDocuments() {
  std::vector<Action> actions;
  for (const LineForm& one : kLineForms) {
    const std::string form = one.form;
    const std::string fresh =
        fmt::format("Form2.{0}; pick {1} 1 2000 50000; pick {1} 3 1000 10000", one.menu, one.code);
    const std::string another = fmt::format("pick {} 2 1000 5000", one.code);
    const std::string open = fmt::format("open {}", one.saved);
    const auto later_too = [&](const std::string& steps) {
      return one.backdated ? fmt::format(fmt::runtime(kLaterOnesToo), steps) : steps;
    };
    actions.push_back({form + ", a new one posted", fresh, form + ".RUNButton"});
    Action post{form + ", a saved one posted", open, form + ".RUNButton"};
    if (one.backdated) post.mend = later_too(post.action);
    actions.push_back(post);
    const std::string posted = open + "; " + post.action;
    Action unpost{form + ", taken out", posted, form + ".mnuUnRun"};
    unpost.mend = later_too(fmt::format("{0}.RUNButton; {0}.mnuUnRun", form));
    actions.push_back(unpost);
    actions.push_back({form + ", balances to the tills", posted, form + ".CmdUpd"});
    // The rest is the same for all of them, but for what an invoice has more.
    if (one.code > 2) continue;
    actions.push_back({form + ", a new one saved", fresh, form + ".CancelButton"});
    actions.push_back({form + ", a line added", fresh, another, Again::kOnTop, kTwice});
    actions.push_back({form + ", a line deleted", fresh + "; " + another, form + ".CmdDel", Again::kStays, kReadFirst});
    actions.push_back({form + ", a saved one opened", "Form2.TabStrip1=jurn", open});
    actions.push_back({form + ", a saved one changed and saved", open + "; " + another, form + ".CancelButton"});
    Action saved_unread{form + ", a saved one opened, saved and opened again", "Form2.TabStrip1=jurn", open};
    saved_unread.mend = fmt::format("{}.CancelButton; {}", form, open);
    actions.push_back(saved_unread);
    actions.push_back({form + ", its movements", posted, form + ".mnuRegistr"});
  }
  return actions;
}

const std::vector<Action> kOtherDocuments = {
    {"a line changed", "open 4", "frmDocPrN.CmdVar; frmPLUdial.OKButton", Again::kUnproved,
     "the line is out before its dialog comes: leaving it without OK loses the line"},
    {"a product scanned", "Form2.mnuDocRN; entry 4820000000017",
     "frmDocRhN.CmdBar; frmPLUdial.TextKol=2; frmPLUdial.TextPrice=3; frmPLUdial.OKButton", Again::kOnTop, kTwice},
    {"left for another", "Form2.mnuDocRN; pick 2 1 1000 5000; Form2.TabStrip1=jurn; Form2.DataGrid6@2",
     "Form2.DataGrid6>Enter", Again::kSame, "", "Form2.TabStrip1=jurn; Form2.DataGrid6@2; Form2.DataGrid6>Enter"},
    {"inventory, filled", "Form2.mnuDocIN", "frmDocIN.CmdDat", Again::kOnTop, "filling twice adds the products twice"},
    {"inventory, a product added", "Form2.mnuDocIN; pick 4 1 90000 0", "pick 4 2 1000 0", Again::kStays,
     "a product that is in is refused"},
    {"inventory, a count changed", "Form2.mnuDocIN; frmDocIN.CmdDat; entry 7", "frmDocIN.CmdVar"},
    {"inventory, a line deleted", "Form2.mnuDocIN; frmDocIN.CmdDat", "frmDocIN.CmdDel", Again::kStays, kReadFirst},
    {"inventory, emptied", "Form2.mnuDocIN; frmDocIN.CmdDat", "frmDocIN.CmdClear"},
    {"inventory, counts emptied", "Form2.mnuDocIN; frmDocIN.CmdDat", "frmDocIN.CmdClearFakt"},
    {.name = "inventory, a new one posted",
     .before = "Form2.mnuDocIN; frmDocIN.CmdDat; entry 7; frmDocIN.CmdVar",
     .action = "frmDocIN.RUNButton",
     .besides = "сформ 12.11.2026 12:00:00 "},  // once it has its number it is saved as a saved one
    {.name = "inventory, a new one saved",
     .before = "Form2.mnuDocIN; frmDocIN.CmdDat; frmDocIN.TextPrim=склад",
     .action = "frmDocIN.CancelButton",
     .besides = "сформ 12.11.2026 12:00:00 "},
    {"inventory, a saved one opened", "Form2.TabStrip1=jurn", "open 7"},
    {"inventory, a saved one posted", "open 7; frmDocIN.TextPrim=склад", "frmDocIN.RUNButton"},
    {"inventory, taken out", "open 7; frmDocIN.RUNButton", "frmDocIN.mnuUnRun", Again::kSame, "",
     "frmDocIN.RUNButton; frmDocIN.mnuUnRun"},
    {"inventory, balances to the tills", "open 7; frmDocIN.RUNButton", "frmDocIN.CmdUpd"},
    {"price change, a line added", "Form2.mnuPereozenk; pick 5 1 0 5000", "pick 5 2 0 6000", Again::kOnTop, kTwice},
    {"price change, a price changed", "open 8; entry 7", "frmDocPRC.CmdVar"},
    {"price change, a line deleted", "open 8", "frmDocPRC.CmdDel", Again::kStays, kReadFirst},
    {"price change, a new one posted", "Form2.mnuPereozenk; pick 5 1 0 5000; pick 5 2 0 6000; frmDocPRC.TextPrim=цены",
     "frmDocPRC.RUNButton"},
    {"price change, a new one saved", "Form2.mnuPereozenk; pick 5 1 0 5000", "frmDocPRC.CancelButton"},
    {"price change, a saved one posted", "open 8", "frmDocPRC.RUNButton"},
    {"daily report, gathered", "Form2.mnuDocDO", "frmDocDO.CmdDat", Again::kSame,
     "one line that fails must not keep the shift from being closed", "", true, true},
    {"daily report, a new one posted", "Form2.mnuDocDO; frmDocDO.CmdDat", "frmDocDO.RUNButton"},
    {"daily report, a new one saved", "Form2.mnuDocDO; frmDocDO.CmdDat", "frmDocDO.CancelButton"},
    {"daily report, balances to the tills", "Form2.mnuDocDO; frmDocDO.CmdDat; frmDocDO.RUNButton", "frmDocDO.CmdUpd"},
    {"daily report, taken out", "Form2.mnuDocDO; frmDocDO.CmdDat; frmDocDO.RUNButton", "frmDocDO.mnuUnRun",
     Again::kSame, "", "frmDocDO.RUNButton; frmDocDO.mnuUnRun"},
    {"journal, a document deleted", "Form2.TabStrip1=jurn; entry #7", "Form2.mnuDelOneDoc", Again::kStays,
     "a document whose head is gone exists no more", "", false},
    {"journal, all deleted", "Form2.TabStrip1=jurn", "Form2.mnuClearDoc"},
    {"journal, read again", "Form2.TabStrip1=sprav", "Form2.TabStrip1=jurn"},
    {"register, opened", "", "Form2.mnuRegistr"},
    {"register, of one product", "Form2.mnuRegistr; pick 106 1 0 0", "FormJrnl.CheckRun=on", Again::kUnproved,
     "the second press takes the filter off"},
};

class Faults : public testing::TestWithParam<Action> {
 protected:
  static void SetUpTestSuite() {
    std::cerr.rdbuf(nullptr);  // each failure leaves its line there
    run_ = std::make_unique<FaultRun>();
    run_->Furnish(kShop, kDocuments);
    const DriveMap& drives = run_->Drives();
    std::ofstream(drives.ToNative("C:/Korvina/hotkeys.txt")) << "101,2\n205,1\n3012,4\n";
    std::ofstream(drives.ToNative("C:\\Korvina\\Report\\lines.txt")) << "1,\" a \",1500\n2,\" b \",250\n4,\" c \",7\n";
    Workbook book;
    book.StatusBar = {""};
    for (int row = 2; row <= 4; ++row) {
      book.Cell(row, 1, std::to_string(row));
      book.Cell(row, 2, fmt::format("Товар {}", row));
    }
    book.SaveAs(drives.ToNative("C:\\Korvina\\Report\\book.xlsx"));
  }
  static void TearDownTestSuite() { run_.reset(); }

  static std::unique_ptr<FaultRun> run_;
};
std::unique_ptr<FaultRun> Faults::run_;

TEST_P(Faults, AtEachStatement) {
  SCOPED_TRACE(GetParam().name);
  run_->Prove(GetParam());
}

const std::vector<Action> kReference = {
    {"catalogue, read again", "Form2.TabStrip1=sprav", "Form2.CmdReqr"},
    {"catalogue, sorted", "Form2.TabStrip1=sprav", "Form2.CmdSortPrice"},
    {"catalogue, balances to the tills", "Form2.TabStrip1=sprav", "Form2.CmdRefrTov"},
    {"catalogue, a product deleted", "Form2.TabStrip1=sprav; Form2.DataGrid1_0@2", "Form2.CmdDelPLU", Again::kStays,
     kReadFirst},
    {"catalogue, emptied", "Form2.TabStrip1=sprav", "Form2.CmdClrAllPLU"},
    {"product, a card opened", "Form2.TabStrip1=sprav; Form2.DataGrid1_0@2", "Form2.CmdShow"},
    {"product, changed",
     "Form2.TabStrip1=sprav; Form2.DataGrid1_0@2; Form2.CmdShow; frmPLU.TextPrise=5; frmPLU.TextBar=",
     "frmPLU.OKButton"},
    {"product, new", "Form2.TabStrip1=sprav; Form2.CmdNew; frmPLU.TextName=Квас; frmPLU.TextPrise=5; frmPLU.TextBar=",
     "frmPLU.OKButton"},
    {"product, a card for a new one", "Form2.TabStrip1=sprav", "Form2.CmdNew"},
    {"product, copied", "Form2.TabStrip1=sprav; Form2.DataGrid1_0@2", "Form2.CmdCopy"},
    {"picker, a product deleted", "Form2.mnuDocPN; frmDocPrN.CmdTov; frmPLUpodb.DataGrid01@2", "frmPLUpodb.CmdDelPLU",
     Again::kStays, kReadFirst},
    {"picker, opened", "Form2.mnuDocPN", "frmDocPrN.CmdTov", Again::kStays, "the list may stand on its first product"},
    {"picker, a product chosen", "Form2.mnuDocPN; frmDocPrN.CmdTov", "frmPLUpodb.DataGrid01>Enter"},
    {"picker, a product delivered",
     "Form2.mnuDocPN; frmDocPrN.CmdTov; frmPLUpodb.DataGrid01@1; frmPLUpodb.DataGrid01>Enter; frmPLUpodb.TextKol=3; "
     "frmPLUpodb.TextPrice=4",
     "frmPLUpodb.OKButton", Again::kOnTop, kTwice},
    {"card, opened", "Form2.TabStrip1=sprav; Form2.DataGrid5@2", "Form2.CmdDKShow"},
    {"card, changed",
     "Form2.TabStrip1=sprav; Form2.DataGrid5@2; Form2.CmdDKShow; frmDK.CheckHolder=on; frmDK.TextSkd=7",
     "frmDK.OKButton"},
    {"card, new", "Form2.TabStrip1=sprav; Form2.CmdDKNew; frmDK.TextName=1003; frmDK.TextSkd=7", "frmDK.OKButton"},
    {"card, deleted", "Form2.TabStrip1=sprav; Form2.DataGrid5@2", "Form2.CmdDKDel", Again::kStays, kReadFirst},
    {"cards, all deleted", "Form2.TabStrip1=sprav", "Form2.CmdClrAllDKard"},
    {"kinds of cards, opened", "Form2.TabStrip1=sprav", "Form2.CmdVDk"},
    {.name = "kinds of cards, a new rule written",
     .before = "Form2.TabStrip1=sprav; Form2.CmdVDk; frmVDk.CmdNew; frmVDk.Text1=103; frmVDk.Combo1=2; frmVDk.Text2=4; "
               "frmVDk.Text3=500",
     .action = "frmVDk.CmdOk",
     .again = Again::kStays,
     .promise = kOver,
     .doubles = true},
    {"kinds of cards, a rule taken out to be changed", "Form2.TabStrip1=sprav; Form2.CmdVDk; frmVDk.DataGrid05@2",
     "frmVDk.CmdEdit", Again::kStays, "one that is taken out is open to be written"},
    {"kinds of cards, a rule deleted", "Form2.TabStrip1=sprav; Form2.CmdVDk; frmVDk.DataGrid05@2", "frmVDk.CmdDel",
     Again::kStays, kReadFirst},
};

const std::vector<Action> kPanels = {
    {"panels, another level", "Form2.TabStrip1=sensor", "Form2.Option2_2"},
    {"panels, another panel", "Form2.TabStrip1=sensor", "Form2.Option1_2"},
    {"panels, the other menu", "Form2.TabStrip1=sensor", "Form2.CmdMenu=2"},
    {"panels, a key selected", "Form2.TabStrip1=sensor", "Form2.CmdM_4"},
    {"panels, a product put on a key", "Form2.TabStrip1=sensor; Form2.CmdM_4; Form2.Text6=2", "Form2.CmdOk1",
     Again::kStays, kOver},
    {"panels, a key emptied", "Form2.TabStrip1=sensor; Form2.CmdM_1", "Form2.CmdClr", Again::kStays, kOver},
    {"panels, a key moved", "Form2.TabStrip1=sensor; Form2.CmdM_1", "drag Form2.CmdM_1 Form2.CmdM_9", Again::kStays,
     "a key that has the product already isn't empty; a level that isn't read is read by a press",
     "Form2.CmdM_1; drag Form2.CmdM_1 Form2.CmdM_9"},
    // Key 2 is empty on the first level alone: while another can't be read it only looks so.
    {"panels, another level, and a key moved", "Form2.TabStrip1=sensor", "Form2.Option2_2", Again::kSame, "",
     "drag Form2.CmdM_1 Form2.CmdM_2"},
    {"panels, another panel, and a key moved", "Form2.TabStrip1=sensor", "Form2.Option1_2", Again::kSame, "",
     "drag Form2.CmdM_1 Form2.CmdM_2"},
    {"panels, the other menu, and a key moved", "Form2.TabStrip1=sensor", "Form2.CmdMenu=2", Again::kSame, "",
     "drag Form2.CmdM_1 Form2.CmdM_2"},
    // What is named is the panel that was chosen, also when it couldn't be shown.
    {"panels, another panel named", "Form2.TabStrip1=sensor", "Form2.Option1_2; Form2.TextName=Бар; Form2.CmdName",
     Again::kSame, "", "Form2.TextName=Бар; Form2.CmdName"},
    {"panels, one of the other menu named", "Form2.TabStrip1=sensor",
     "Form2.CmdMenu=2; Form2.TextName=Бар; Form2.CmdName", Again::kSame, "", "Form2.TextName=Бар; Form2.CmdName"},
    {"panels, named", "Form2.TabStrip1=sensor; Form2.TextName=Гриль; Form2.TextMenu=Летнее", "Form2.CmdName"},
    {"panels, all emptied", "Form2.TabStrip1=sensor", "Form2.CmdClrAll"},
    {"panels, copying opened", "Form2.TabStrip1=sensor", "Form2.CmdCopyAll"},
    {"panels, copied", "Form2.TabStrip1=sensor; Form2.CmdCopyAll", "drag FormCopy.CmdPan_101 FormCopy.CmdPan_205"},
    {"panels, painted again", "Form2.TabStrip1=sensor; Form2.CmdCopyAll", "FormCopy.CmrRefr"},
    {"panels, written to a file", "Form2.TabStrip1=sensor; Form2.CmdCopyAll", "FormCopy.CmdExportMenu"},
    {"panels, loaded from a file", "Form2.TabStrip1=sensor; Form2.CmdCopyAll", "FormCopy.CmdImportMenu"},
};

/// A filter's label says that the query is under way until there is an answer.
std::vector<Action> Filters() {
  constexpr const char* kWrongDate = "Неправильно введена дата!";
  constexpr const char* kWorking = "обработка запроса...";
  struct Filter {
    const char* button;
    const char* before;
    const char* box;  ///< "" for that of a run-time error
  };
  constexpr Filter kFilters[] = {{"CmdDat", "", kWrongDate},
                                 {"CmdAll", "", ""},
                                 {"CmdTerm", "Form2.Text7=1", ""},
                                 {"CmdOfc", "Form2.Text3=1", ""},
                                 {"CmdFiltr", "Form2.Text1=1", ""},
                                 {"CmdDKart", "Form2.Text5=1", ""},
                                 {"CmdNOpl", "", ""},
                                 {"CmdFisk", "Form2.CheckFP1=on", ""},
                                 {"CmdFilCheck", "Form2.Text2=2; Form2.Text7=1", ""},
                                 {"CmdDG_1", "", kWrongDate},
                                 {"CmdDG_2", "", kWrongDate},
                                 {"CmdDatLite", "", kWrongDate},
                                 {"CmdAllLite", "", ""},
                                 {"CmdTermLite", "Form2.Text4=1", kWrongDate},
                                 {"CmdOfcLite", "Form2.Text8=1", kWrongDate},
                                 {"CmdDKartLite", "Form2.Text9=1", kWrongDate},
                                 {"CmdFiskLite", "", kWrongDate}};
  std::vector<Action> actions;
  for (const auto& [button, before, box] : kFilters) {
    const bool lite = std::string_view(button).ends_with("Lite");
    actions.push_back(
        {.name = button,
         .before = fmt::format("{}{}", lite ? "sql UPDATE CONST SET N3=1 WHERE COD=7; restart; " : "", before),
         .action = fmt::format("Form2.{}", button),
         .box = box,
         .shows = fmt::format("Form2.{}={}", lite ? "LblInfLite" : "LblInf", kWorking)});
  }
  return actions;
}

const std::vector<Action> kSales = {
    {"sales, an hour chosen", "", "Form2.Combo1=9"},
    {"sales, to a file", "Form2.CmdFileCSV", "Form2.CmdFileCSV"},
    {"sales, cleared", "Form2.mnuClearProd; frmClear.Check2=on; frmClear.Text4=11.11.2026", "frmClear.CmdDel"},
    {"sales, cleared with the marks", "Form2.mnuClearProd; frmClear.Check1=on; frmClear.Text4=11.11.2026",
     "frmClear.CmdDel", Again::kUnproved, "a shop without marks mustn't notice: what fails there is passed over"},
    {"sales, the clearing's window", "", "Form2.mnuClearProd"},
    {"sales, a line annulled", "Form2.mnuDelCheck; frmDelChek.CmdKas_3", "frmDelChek.DataGrid1>Enter", Again::kUnproved,
     "a line is logged before it goes: one that stays is logged once more"},
    {"sales, a receipt shown", "Form2.mnuDelCheck", "frmDelChek.CmdKas_3"},
    // The sets have a trap with its message; the panels behind them have none and end the start.
    {.name = "start", .before = "", .action = "restart", .boxes = 2},
    {.name = "start without a register",
     .before = "sql UPDATE CONST SET N3=0 WHERE COD=7",
     .action = "restart",
     .boxes = 2},
    {.name = "Lite, start", .before = "sql UPDATE CONST SET N3=1 WHERE COD=7", .action = "restart", .boxes = 2},
    {"Lite, cleared",
     "sql UPDATE CONST SET N3=1 WHERE COD=7; restart; Form2.CmdDelProdLite; frmClearLite.Text4=11.11.2026",
     "frmClearLite.CmdDel", Again::kSame, "", "", false},
};

const std::vector<Action> kReports = {
    {"text reports, opened", "", "Form2.mnuSystem"},
    {"system report", "Form2.mnuSystem", "Form9.CmdDat"},
    {"report by places", "Form2.mnuSystem", "Form9.CmdDat1"},
    {"report by waiters", "Form2.mnuSystem", "Form9.CmdDat2"},
    {"report of waiters, whole", "Form2.mnuSystem; Form9.Check2=on", "Form9.CmdDat2"},
    {"names of the places", "Form2.mnuSystem; Form9.CmdRun; Form9.Text1=Гриль", "Form9.CmdSave"},
    {"table of the staff", "Form2.mnuTabel; FormTab.Check3=off", "FormTab.CmdTab"},
    {"table of orders", "Form2.mnuTabelChk; FormTabChk.Check3=off", "FormTabChk.CmdTab"},
    {"table of cards", "Form2.mnuTabelDk; FormTabDk.Check3=off", "FormTabDk.CmdDisc"},
    {"table of hours", "Form2.mnuTabelTime", "FormTabTim.CmdHr"},
    {"table of orders by hours", "Form2.mnuTabelTime", "FormTabTim.CmdChk"},
    {"table of balances", "Form2.mnuReportSaldo; FormTabOst.Check3=off", "FormTabOst.CmdOst"},
    {"table of a product's movements", "Form2.mnuReportRun; pick 100 1 0 0; FormTabRun.Check3=off",
     "FormTabRun.CmdRun"},
    {"table of turnover", "Form2.mnuReportRun; FormTabRun.Check3=off", "FormTabRun.CmdRunAll"},
};

const std::string kImport = "; frmImpTov.TextPath=C:\\Korvina\\Report\\";
const std::vector<Action> kImports = {
    {"counts loaded from a file", "Form2.mnuDocIN; frmDocIN.CmdDownlFakt" + kImport + "lines.txt", "frmImpTov.CmdRun",
     Again::kUnproved, "the message says which lines are in; they would be counted twice"},
    {"a transfer loaded from a file", "Form2.mnuDocPERplus; frmDocPERplus.CmdDownl" + kImport + "lines.txt",
     "frmImpTov.CmdRun", Again::kOnTop, "the message says which lines are in; they come once more"},
    {"the catalogue loaded from a file",
     "Form2.TabStrip1=sprav; Form2.CmdImportTov; frmImpTov.Option1_0" + kImport + "book.xlsx", "frmImpTov.CmdRun"},
};

const std::string kReserve =
    std::string("sql DELETE FROM HOTKEYS WHERE ID>103; Form2.mnuExport; frmExpImp.TxtUDL1=") + kReserveLink;
const std::vector<Action> kExports = {
    {"reserve, connected", kReserve, "frmExpImp.CmdConn1", Again::kUnproved,
     "a reserve that is switched off is no failure, and one that is connected isn't connected again", "", true, true},
    {"reserve, the catalogue", kReserve + "; frmExpImp.CmdConn1", "frmExpImp.CmdTov"},
    {"reserve, the staff", kReserve + "; frmExpImp.CmdConn1", "frmExpImp.CmdOfc"},
    {"reserve, the keys", kReserve + "; frmExpImp.CmdConn1", "frmExpImp.CmdKeys"},
    {"reserve, the sales", kReserve + "; frmExpImp.CmdConn1", "frmExpImp.CmdExp", Again::kUnproved,
     "a row there and its mark here are no transaction: what fails between them is copied twice"},
};

INSTANTIATE_TEST_SUITE_P(LineDocuments, Faults, testing::ValuesIn(LineDocuments()));
INSTANTIATE_TEST_SUITE_P(OtherDocuments, Faults, testing::ValuesIn(kOtherDocuments));
INSTANTIATE_TEST_SUITE_P(Reference, Faults, testing::ValuesIn(kReference));
INSTANTIATE_TEST_SUITE_P(Panels, Faults, testing::ValuesIn(kPanels));
INSTANTIATE_TEST_SUITE_P(Filters, Faults, testing::ValuesIn(Filters()));
INSTANTIATE_TEST_SUITE_P(Sales, Faults, testing::ValuesIn(kSales));
INSTANTIATE_TEST_SUITE_P(Reports, Faults, testing::ValuesIn(kReports));
INSTANTIATE_TEST_SUITE_P(Exports, Faults, testing::ValuesIn(kExports));
INSTANTIATE_TEST_SUITE_P(Imports, Faults, testing::ValuesIn(kImports));

}  // namespace
}  // namespace zrt::test
