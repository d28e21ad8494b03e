// The exchange with the reserve server, a second base beside the shop's: what is copied, in which statements, how
// often, and what is left after a failure on either side.

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "core/text.h"
#include "exchange/frm_exp_imp.h"
#include "exchange/product_sheet.h"
#include "platform/workbook.h"
#include "support/program_test.h"

namespace zrt {
namespace {

using test::LinkTo;
using test::ProgramTest;
using test::ScriptedFaults;
using test::Stage;
using test::TestDatabase;
using Texts = std::vector<std::string>;

constexpr const char* kLink = "C:\\KORVINA\\reserve.udl";
constexpr const char* kNothing = "а выгружать-то нечего...";
constexpr const char* kCopied = "Экспорт таблицы продаж успешно завершен!";

// What must be the same on both sides: the reserve numbers its rows itself, and gets no more than the day of DAT.
constexpr const char* kSold =
    "SELECT COD,NAME,KOL,PRISE,SKID,SUM2,TER,PERS,DATETIME,REZ,NUM,N1,N2,N3,N4,T1,N5,N6,N7,UKT FROM PROD WHERE N4>2";
constexpr const char* kReceipts =
    "SELECT OPER,SUM1,SKID,SUM2,PLUS,MINUS,TER,PERS,LEFT(DAT,10),TIM,NUM,N1,N2,N3,N4,T1,N5,N6,N7 FROM KASSA WHERE N4>2";

class Reserve : public ProgramTest {
 protected:
  Reserve() {
    reserve_.Sql("DELETE FROM HOTKEYS");
    shop_.Sql("DELETE FROM HOTKEYS");
    WriteFile(kLink, LinkTo(reserve_.Address()));
  }

  /// A sold line of an order of terminal 1. `rest`: N4, N6, UKT.
  void Sell(int num, const std::string& rest = "3,1,'2203'", const std::string& name = "Чай") {
    shop_.Sql(fmt::format(
        "INSERT INTO PROD (COD,NAME,KOL,PRISE,SKID,SUM2,TER,PERS,DATETIME,REZ,NUM,N1,N2,N3,T1,N5,N4,N6,UKT) "
        "VALUES (7,'{}',1500,12500,250,18500,1,4,'2026-11-12 09:05:07',0,{},0,1,2,'ОПЛ',11,{})",
        name, num, rest));
  }
  void Pay(int num, const std::string& n3 = "0", const std::string& n5 = "NULL") {
    shop_.Sql(fmt::format(
        "INSERT INTO KASSA (OPER,SUM1,SKID,SUM2,PLUS,MINUS,TER,PERS,DAT,TIM,NUM,N1,N2,N3,N4,T1,N5,N6) VALUES "
        "('Заказ',18.505,0.250,18.505,0,0,1,4,'2026-11-12 09:04:00','2026-11-12 09:05:07',{},0,5,{},3,'ОПЛ',{},NULL)",
        num, n3, n5));
  }

  frmExpImp& Screen() { return app_->Exchange; }
  void Open() {
    Start();
    Click(app_->Main.mnuExport);
    Type(Screen().TxtUDL1, kLink);
    faults_.Forget();
  }
  void Connect() {
    Open();
    Click(Screen().CmdConn1);
    ASSERT_TRUE(Screen().Frame2.Enabled());
    ASSERT_EQ(app_->TheSession.ConnReserve.ConnectionTimeout, 1800);
    app_->TheSession.ConnReserve.SetFaultSource(&reserve_faults_);
    faults_.Forget();
  }
  void Press(Button& button, const char* box) {
    if (box != nullptr) desktop_.Expect(box, BoxAnswer::kOk, BoxIcon::kExclamation);
    Click(button);
  }
  TestDatabase reserve_;
  ScriptedFaults reserve_faults_;
};

TEST_F(Reserve, OpensWithWhatIsKeptAndRefusesWhatIsNoFile) {
  shop_.Sql("UPDATE CONST SET N5='D:\\\\old.udl' WHERE COD=6");
  Start();
  app_->TheSession.UdlPath = "C:\\shop.udl";
  Click(app_->Main.mnuExport);
  EXPECT_EQ(Screen().TxtUDL.Text(), "C:\\shop.udl");
  EXPECT_EQ(Screen().TxtUDL1.Text(), "D:\\old.udl");
  EXPECT_FALSE(Screen().CmdTov.IsEnabled());
  EXPECT_FALSE(Screen().LblConn1.Visible());
  EXPECT_FALSE(Screen().CmdClrRez.Visible());
  faults_.Forget();
  for (const auto& [path, text] : {std::pair{"", "Как же так?..., это же основной сервер!!!"},
                                   std::pair{"D:\\old.udl", "Не могу найти файл доступа к данным!"},
                                   std::pair{"C:\\Korvina", "Не могу найти файл доступа к данным!"}}) {
    Type(Screen().TxtUDL1, path);
    desktop_.Expect(text, BoxAnswer::kOk, BoxIcon::kCritical);
    Click(Screen().CmdConn1);
  }
  EXPECT_TRUE(faults_.Statements().empty());
  // A tab that is chosen takes the window away as it is.
  Do([this] { app_->Main.TabStrip1.UserChoose("prod"); });
  EXPECT_FALSE(Screen().IsVisible());
}

TEST_F(Reserve, ConnectingMarksTheOtherBaseAndKeepsThePath) {
  reserve_.Sql("INSERT INTO PROD (COD,DATETIME) VALUES (1,'2026-11-11 23:05:00'),(1,'2026-11-12 00:00:00')");
  Open();
  Click(Screen().CmdConn1);
  EXPECT_EQ(reserve_.Value("SELECT N6 FROM CONST WHERE COD=6"), "резервный");
  EXPECT_EQ(shop_.Value("SELECT N6 FROM CONST WHERE COD=6"), "NULL");
  EXPECT_EQ(Screen().LblConn1.Caption(), "Подключено");
  EXPECT_EQ(Screen().LblConn1.ForeColor(), 0x008000U);
  EXPECT_TRUE(Screen().LblConn1.IsShown());
  EXPECT_FALSE(Screen().CmdConn1.Enabled());
  EXPECT_TRUE(Screen().CmdExp.IsUsable());
  EXPECT_EQ(Screen().LblEnd.Caption(), "12.11.2026");
  EXPECT_TRUE(app_->TheSession.ConnReserveOpen);
  // A window opened anew connects anew.
  Do([this] { Screen().Close(); });
  Click(app_->Main.mnuExport);
  EXPECT_FALSE(Screen().Frame2.Enabled());
  for (const std::string& bytes : {std::string("no link any more"), LinkTo(reserve_.Address())}) {
    WriteFile(kLink, bytes);
    Type(Screen().TxtUDL1, kLink);
    Click(Screen().CmdConn1);
    EXPECT_EQ(app_->TheSession.ConnReserveOpen, bytes.starts_with("["));
    EXPECT_EQ(app_->TheSession.ConnReserve.IsOpen(), bytes.starts_with("["));
  }
  Do([this] { app_->Main.Close(); });
  EXPECT_FALSE(app_->TheSession.ConnReserveOpen);
  EXPECT_FALSE(app_->TheSession.ConnReserve.IsOpen());
}

TEST_F(Reserve, ABaseThatIsNoReserveIsntConnected) {
  DatabaseAddress in_short = shop_.Address();  // 127.0.0.5 is 127.5 as well
  in_short.host.replace(0, in_short.host.rfind('.'), "127");
  DatabaseAddress nowhere = reserve_.Address();
  nowhere.schema = "zrt_no_such_schema";
  reserve_.Sql("DROP TABLE CONST");  // it can't be marked
  struct Case {
    std::string link;
    bool own = false;
    bool open = false;
  };
  // The shop's own base is refused by whatever address; what can't be reached or marked is passed over in silence.
  const Case cases[] = {{LinkTo(shop_.Address()), true},
                        {LinkTo(in_short), true},
                        {LinkTo(nowhere)},
                        {"no link at all"},
                        {LinkTo(reserve_.Address()), false, true}};
  for (const auto& [link, own, open] : cases) {
    WriteFile(kLink, link);
    Open();
    if (own) {
      desktop_.Expect(
          "Этот файл доступа к данным ведёт в базу основного сервера!\nРезервная копия должна лежать в другой базе.",
          BoxAnswer::kOk, BoxIcon::kCritical);
    }
    Click(Screen().CmdConn1);
    EXPECT_FALSE(Screen().Frame2.Enabled() || Screen().LblConn1.Visible());
    EXPECT_TRUE(Screen().CmdConn1.Enabled());
    EXPECT_EQ(app_->TheSession.ConnReserveOpen, open);
    EXPECT_EQ(shop_.Value("SELECT N6 FROM CONST WHERE COD=6"), "NULL");
    app_.reset();
  }
  EXPECT_EQ(shop_.Value("SELECT N5 IS NULL FROM CONST WHERE COD=6"), "0");  // the path is kept all the same
}

TEST_F(Reserve, ThePathIsKeptWithItsFirstBackSlashProtected) {
  const std::pair<std::string, std::string> cases[] = {
      {"C:\\KORVINA.udl", "C:\\\\\\KORVINA.udl"},
      {"C:\\a\\b.udl", "C:\\\\\\a\\b.udl"},
      {"r.udl", "\\\\r.udl"},
      {"0", ""},
      // 50 characters in all, two of them added
      {"C:\\" + std::string(60, 'x'), "C:\\\\\\" + std::string(45, 'x')},
      // the first back-slash stands too far behind
      {std::string(55, 'y') + "\\z", "\\\\" + std::string(48, 'y')},
      {"ж\\udl", "ж\\\\\\udl"},
  };
  Open();
  for (const auto& [path, kept] : cases) {
    WriteFile(path, "no link");
    Type(Screen().TxtUDL1, path);
    faults_.Forget();
    Click(Screen().CmdConn1);
    EXPECT_EQ(faults_.Statements().back(), "UPDATE CONST SET N5='" + kept + "' WHERE COD=6");
  }
}

TEST_F(Reserve, ListsAreReplacedWhole) {
  shop_.Sql(
      "INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,T1,N5,N7,UKT) VALUES "
      "(1,1,'Чай',-5,7,12050,'4820000000017',1,2,0,21,0,'ТОВАР',0,0,''),(2,1,'Вода',0,0,4000,'0',0,0,0,0,0,'',0,0,'22'"
      ")");
  shop_.Sql("INSERT INTO KLIENT (COD,NAME,TOTAL,SUM1,DATETIME,NUM) VALUES (4,'Анна',0,0,'1234',3)");
  shop_.Sql("INSERT INTO HOTKEYS (ID,CODE,REZ,LV) VALUES (101,1,1,1),(102,2,1,NULL),(1301,2,13,1)");
  reserve_.Sql("INSERT INTO TOVAR (COD,COD1,NAME) VALUES (99,1,'Старое')");
  reserve_.Sql("INSERT INTO KLIENT (COD,NAME) VALUES (99,'Старый')");
  reserve_.Sql("INSERT INTO HOTKEYS (ID,CODE,REZ,LV) VALUES (999,1,1,1)");
  Connect();
  {
    const test::Told bar(Screen().ProgressBar);
    Press(Screen().CmdTov, "Экспорт справочника товаров успешно завершен!");
    EXPECT_TRUE(bar.Text.ends_with("Max=2 Value=1 Value=2 Value=0 ")) << bar.Text;
  }
  Press(Screen().CmdOfc, "Экспорт списка официантов успешно завершен!");
  Press(Screen().CmdKeys, "Экспорт сенсорной клавиатуры успешно завершен!");
  for (const char* all :
       {"SELECT ID,COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,T1,N5,N7,UKT FROM TOVAR ORDER BY ID",
        "SELECT * FROM KLIENT", "SELECT ID,CODE,REZ,LV FROM HOTKEYS WHERE LV IS NOT NULL ORDER BY ID"}) {
    EXPECT_EQ(reserve_.Rows(all), shop_.Rows(all)) << all;
  }
  EXPECT_EQ(reserve_.Value("SELECT COUNT(*) FROM HOTKEYS"), "2");
  EXPECT_EQ(Screen().ProgressBar.Value(), 0);
  // A list without rows leaves the other as it was.
  for (const char* table : {"TOVAR", "KLIENT", "HOTKEYS"}) shop_.Sql(std::string("DELETE FROM ") + table);
  for (Button* button : {&Screen().CmdTov, &Screen().CmdOfc, &Screen().CmdKeys}) Press(*button, nullptr);
  EXPECT_EQ(reserve_.Value("SELECT COUNT(*) FROM TOVAR,KLIENT,HOTKEYS"), "4");
}

// A product is written whole by three hands. A column that one of them doesn't know is lost with the next save, load or
// copy: a new one is kept by all, or stands here with its reason.
TEST_F(Reserve, NobodyWhoWritesAProductForgetsAColumn) {
  const std::string known = "ID,COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,N5,N6,N7,T1,UKT";
  shop_.Sql(
      "INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,N5,N6,N7,T1,UKT) VALUES "
      "(7,1,'Чай',-5,3,12050,'4820000000017',1,2,1,21,4,2000,0,500,'00.00.0000','2203')");
  const auto columns = [this](const std::string& all_but) {
    return shop_.Column(
        fmt::format("SELECT COLUMN_NAME FROM information_schema.COLUMNS WHERE TABLE_SCHEMA=DATABASE() AND "
                    "TABLE_NAME='TOVAR' AND NOT FIND_IN_SET(COLUMN_NAME,'{}') ORDER BY COLUMN_NAME",
                    all_but));
  };
  for (const std::string& column : columns(known)) shop_.Sql("UPDATE TOVAR SET " + column + "='08'");
  const auto values = [&](TestDatabase& base) {
    std::map<std::string, std::string> row;
    for (const std::string& column : columns("ID")) row[column] = base.Value("SELECT " + column + " FROM TOVAR");
    return row;
  };
  const auto before = values(shop_);
  const auto lost = [&](TestDatabase& base) {
    Texts differing;
    for (const auto& [column, value] : values(base)) {
      if (value != before.at(column)) differing.push_back(column);
    }
    return differing;
  };
  const Texts others_leave = {"N3", "N6", "N8", "N9"};  // a product from outside keeps stock
  Connect();
  Press(Screen().CmdTov, "Экспорт справочника товаров успешно завершен!");
  EXPECT_EQ(lost(reserve_), others_leave);

  Do([this] { app_->Main.TabStrip1.UserChoose("sprav"); });
  desktop_.InModal([&](Form&) { ProgramTest::Press(app_->ProductCard.TextPrise, "Enter"); });
  Click(app_->Main.Catalogue.CmdShow);
  // Balances are the register's, and the rest the tills' own.
  EXPECT_EQ(lost(shop_), (Texts{"KOL", "N3", "N8", "N9", "OST"}));

  Workbook book;
  book.StatusBar = {""};
  book.Cell(2, 1, "7");
  book.Cell(2, 2, "Чай");
  book.SaveAs(drives_.ToNative("C:\\Korvina\\Report\\book.xlsx"));
  const ProductSheet sheet(drives_, "C:\\Korvina\\Report\\book.xlsx", app_->TheSession.Format());
  const std::string loaded = sheet.InsertStatement(2, 7, "Чай");
  EXPECT_EQ(columns(loaded.substr(19, loaded.find(')') - 19)), others_leave);
}

TEST_F(Reserve, ANullOrAQuoteEndsTheListAtItsRow) {
  for (const char* bad :
       {"(2,1,'Вода',0,0,1,NULL,0,0,0,0,0,'',0,0,'')", "(2,1,'O''Нил',0,0,1,'0',0,0,0,0,0,'',0,0,'')"}) {
    shop_.Sql("DELETE FROM TOVAR");
    shop_.Sql(
        std::string("INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,T1,N5,N7,UKT) VALUES "
                    "(1,1,'Чай',0,0,1,'0',0,0,0,0,0,'',0,0,''),") +
        bad);
    reserve_.Sql("INSERT INTO TOVAR (COD,COD1,NAME) VALUES (99,1,'Старое')");
    Connect();
    Fails(Screen().CmdTov);
    EXPECT_EQ(reserve_.Column("SELECT NAME FROM TOVAR"), Texts{"Чай"});
    app_.reset();
  }
}

TEST_F(Reserve, ClosedSalesAreAppendedAndMarkedOnce) {
  Sell(1);
  Sell(2, "2,1,'2203'");  // not closed yet
  Sell(3, "4,NULL,NULL");
  shop_.Sql("INSERT INTO PROD (COD,N4,NUM) VALUES (7,3,9)");  // no moment
  Pay(1, "0", "1");
  Pay(3, "NULL");  // a plain receipt has no table
  shop_.Sql("UPDATE PROD SET N5=NULL,T1=NULL WHERE NUM=3");
  shop_.Sql("UPDATE KASSA SET PLUS=NULL WHERE NUM=3");
  shop_.Sql("UPDATE PROD SET DATETIME='2026-11-12 00:00:00' WHERE NUM=3");
  Connect();
  const test::Told bar(Screen().ProgressBar);
  Press(Screen().CmdExp, kCopied);
  EXPECT_TRUE(bar.Text.starts_with("Max=1 Value=1 Value=0 Max=4 Value=1 ")) << bar.Text;
  for (const std::string sold : {kSold, kReceipts}) EXPECT_EQ(reserve_.Rows(sold), shop_.Rows(sold + " AND NUM<9"));
  EXPECT_EQ(reserve_.Column("SELECT TIME(DAT) FROM KASSA"), (Texts{"00:00:00", "00:00:00"}));
  EXPECT_EQ(shop_.Column("SELECT NUM FROM PROD WHERE N7 IS NULL ORDER BY NUM"), (Texts{"2", "9"}));
  EXPECT_EQ(Screen().LblEnd.Caption(), "12.11.2026 09:05:07");
  EXPECT_EQ(Screen().ProgressBar.Value(), 0);

  Press(Screen().CmdExp, kNothing);
  Pay(2);  // without a closed line it waits
  Press(Screen().CmdExp, kNothing);
  EXPECT_EQ(reserve_.Value("SELECT COUNT(*) FROM KASSA"), "2");
  shop_.Sql("UPDATE PROD SET N4=3 WHERE NUM=2");
  clock_.Set({{2027, 1, 3}, 1, 0, 0});
  Press(Screen().CmdExp, kCopied);
  EXPECT_EQ(shop_.Column("SELECT N7 FROM KASSA ORDER BY ID"), (Texts{"121126", "121126", "30127"}));
}

TEST_F(Reserve, AStoppedCopyGoesOnWhereItStopped) {
  for (int order = 1; order <= 3; ++order) Sell(order);
  Pay(1);
  Connect();
  reserve_faults_.CutAt(1);  // one that went away is found again by the next copy
  Fails(Screen().CmdExp);
  desktop_.StopAfter = 2;
  Click(Screen().CmdExp);
  EXPECT_EQ(reserve_.Column("SELECT NUM FROM PROD ORDER BY NUM"), (Texts{"1", "2"}));
  EXPECT_EQ(shop_.Column("SELECT NUM FROM PROD WHERE N7 IS NULL"), (Texts{"3"}));
  EXPECT_EQ(reserve_.Value("SELECT COUNT(*) FROM KASSA"), "0");
  EXPECT_EQ(Screen().ProgressBar.Value(), 0);
  desktop_.StopAfter = -1;
  Press(Screen().CmdExp, kCopied);
  EXPECT_EQ(reserve_.Column("SELECT NUM FROM PROD ORDER BY NUM"), (Texts{"1", "2", "3"}));
  EXPECT_EQ(reserve_.Value("SELECT COUNT(*) FROM KASSA"), "1");
}

TEST_F(Reserve, ARowThatCantBeWrittenKeepsTheOthersFromGoing) {
  struct Case {
    const char* spoilt;
    const char* sold;  ///< lines copied by then
    const char* paid;
  };
  const Case cases[] = {{"UPDATE PROD SET UKT='' WHERE NUM=2", "1", "0"},
                        {"UPDATE PROD SET UKT='22 A' WHERE NUM=2", "1", "0"},
                        {"UPDATE PROD SET NAME='О''Нил' WHERE NUM=2", "1", "0"},
                        {"UPDATE KASSA SET TIM=NULL WHERE NUM=2", "2", "1"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.spoilt);
    for (TestDatabase* base : {&shop_, &reserve_}) {
      base->Sql("DELETE FROM PROD");
      base->Sql("DELETE FROM KASSA");
    }
    for (int order = 1; order <= 2; ++order) {
      Sell(order);
      Pay(order);
    }
    shop_.Sql(c.spoilt);
    Connect();
    Fails(Screen().CmdExp);
    EXPECT_EQ(reserve_.Value("SELECT COUNT(*) FROM PROD"), c.sold);
    EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM PROD WHERE N7 IS NOT NULL"), c.sold);
    EXPECT_EQ(reserve_.Value("SELECT COUNT(*) FROM KASSA"), c.paid);
    app_.reset();
  }
}

TEST_F(Reserve, TheReserveStatusIsTakenBackByThePasswordAlone) {
  shop_.Sql("UPDATE CONST SET N6='резервный' WHERE COD=6");
  Start();
  EXPECT_EQ(app_->Main.Caption(), "zrt = СЕРВЕР ХРАНЕНИЯ ДАННЫХ!");
  Click(app_->Main.mnuExport);
  EXPECT_FALSE(Screen().CmdConn1.Enabled());
  ASSERT_TRUE(Screen().CmdClrRez.IsUsable());
  constexpr const char* kAsk = "Для отмены статуса РЕЗЕРВНЫЙ для текущего сервера введите пароль администратора:";
  constexpr const char* kConfirm =
      "Подтвердите отмену статуса РЕЗЕРВНЫЙ для текущего сервера!\nпрограмма будет закрыта";
  for (const char* password : {"", "357217", "357218"}) {
    desktop_.ExpectInput(kAsk, password);
    if (std::string(password) == "357218") desktop_.Expect(kConfirm, BoxAnswer::kCancel, BoxIcon::kQuestion);
    Click(Screen().CmdClrRez);
  }
  EXPECT_EQ(shop_.Value("SELECT N6 FROM CONST WHERE COD=6"), "резервный");
  EXPECT_FALSE(desktop_.ExitCode());
  desktop_.ExpectInput(kAsk, "357218");
  desktop_.Expect(kConfirm, BoxAnswer::kOk, BoxIcon::kQuestion);
  desktop_.Expect("Программа будет закрыта!");
  Click(Screen().CmdClrRez);
  EXPECT_EQ(shop_.Value("SELECT N6 FROM CONST WHERE COD=6"), "NULL");
  EXPECT_EQ(desktop_.ExitCode(), 0);
  EXPECT_FALSE(Screen().IsLoaded());
}

TEST_F(Reserve, AnotherDataLinkGoesIntoTheSettingsFileAndEndsTheProgram) {
  Start();
  Click(app_->Main.mnuExport);
  Type(Screen().TxtUDL, "C:\\new.udl");
  Click(Screen().CmdConn);
  EXPECT_EQ(FileBytes("C:/Korvina/ZRTr"), "zrt,C:\\new.udl\r\n");
  EXPECT_EQ(desktop_.ExitCode(), 0);
  app_.reset();
  // Where the file can't be written nothing is lost, and the program goes on.
  std::filesystem::remove_all(folder_ / "C" / "Korvina");
  std::ofstream(folder_ / "C" / "Korvina") << "a file in the folder's place";
  Start();
  Click(app_->Main.mnuExport);
  Fails(Screen().CmdConn);
  EXPECT_TRUE(Screen().IsVisible());
}

}  // namespace
}  // namespace zrt
