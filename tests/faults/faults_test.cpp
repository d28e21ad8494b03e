// Every action of more than one statement, broken at each of them: once by a server that refuses the statement, once by
// a link that is cut there. Whatever fails, the program lives, one box comes at most, the shop is as the first
// statements left it, and the same action once more ends where it would have ended, or where its row says.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "faults/fault_run.h"

namespace zrt::test {
namespace {

const std::vector<std::string> kShop = {
    "UPDATE CONST SET N8=8 WHERE COD=5",
    "INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,N5,N7,N6,UKT) VALUES "
    "(1,1,'Чай',0,0,12050,'4820000000017',1,0,0,0,0,0,0,NULL,''),"
    "(2,1,'Вино',0,0,95000,'4820000000024',1,0,1,12,0,0,0,NULL,''),"
    "(3,1,'Доставка',0,0,10000,'4820000000031',1,0,0,21,0,0,0,0,''),"
    "(4,1,'Вода',0,0,4000,'0',1,0,0,3,0,0,0,NULL,'')",
    "INSERT INTO PROD (COD,NAME,KOL,PRISE,SKID,SUM2,REZ,DATETIME,TER,NUM,PERS,N4) VALUES "
    "(1,'Чай',2000,120500,0,241000,0,'2026-11-11 09:00:00',1,1,1,3),"
    "(2,'Вино',500,950000,0,475000,0,'2026-11-11 13:00:00',1,1,1,3),"
    "(1,'Чай',1000,120500,0,120500,0,'2026-11-12 09:00:00',1,2,1,3)",
    "INSERT INTO KASSA (OPER,SUM1,SKID,SUM2,TER,PERS,DAT,TIM,NUM,N4) VALUES "
    "('Заказ',716,0,716,1,1,'2026-11-11 09:00:00','2026-11-11 13:30:00',1,3),"
    "('Заказ',120.5,0,120.5,1,1,'2026-11-12 09:00:00','2026-11-12 09:30:00',2,3)",
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
    actions.push_back({form + ", a line added", fresh, another, Again::kOnTop, "one that is in comes once more"});
    actions.push_back({form + ", a line deleted", fresh + "; " + another, form + ".CmdDel", Again::kTwice,
                       "the line that is the current one by then goes"});
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
    {"inventory, filled", "Form2.mnuDocIN", "frmDocIN.CmdDat", Again::kOnTop, "filling twice adds the products twice"},
    {"inventory, a product added", "Form2.mnuDocIN; pick 4 1 90000 0", "pick 4 2 1000 0", Again::kStays,
     "a product that is in is refused"},
    {"inventory, a count changed", "Form2.mnuDocIN; frmDocIN.CmdDat; entry 7", "frmDocIN.CmdVar"},
    {"inventory, a line deleted", "Form2.mnuDocIN; frmDocIN.CmdDat", "frmDocIN.CmdDel", Again::kTwice,
     "the line that is the current one by then goes"},
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
    {"price change, a line added", "Form2.mnuPereozenk; pick 5 1 0 5000", "pick 5 2 0 6000", Again::kOnTop,
     "one that is in comes once more"},
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
    {"journal, a document deleted", "Form2.TabStrip1=jurn; entry 910007", "Form2.mnuDelOneDoc", Again::kStays,
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
  }
  static void TearDownTestSuite() {
    std::printf("%d runs\n", runs_);
    run_.reset();
  }

  static std::unique_ptr<FaultRun> run_;
  static int runs_;
};
std::unique_ptr<FaultRun> Faults::run_;
int Faults::runs_ = 0;

TEST_P(Faults, AtEachStatement) {
  SCOPED_TRACE(GetParam().name);
  runs_ += run_->Prove(GetParam());
}

std::string NameOf(const testing::TestParamInfo<Action>& info) {
  std::string name = info.param.name;
  std::replace_if(
      name.begin(), name.end(), [](char character) { return std::isalnum(static_cast<unsigned char>(character)) == 0; },
      '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(LineDocuments, Faults, testing::ValuesIn(LineDocuments()), NameOf);
INSTANTIATE_TEST_SUITE_P(OtherDocuments, Faults, testing::ValuesIn(kOtherDocuments), NameOf);

}  // namespace
}  // namespace zrt::test
