#include <fmt/format.h>

#include <string>
#include <utility>
#include <vector>

#include "core/text.h"
#include "support/program_test.h"

namespace zrt {
namespace {

using test::ProgramTest;
using test::Stage;

constexpr const char* kNotWhole = "Введите целое числовое значение!";
constexpr const char* kWorking = "обработка запроса...";

/// The whole program on a base that a test fills; the shift of 12.11. from 8:00 is on.
class Sales : public ProgramTest {
 protected:
  explicit Sales(Stage stage = Stage::kPlain) : ProgramTest(stage) { shop_.Sql("UPDATE CONST SET N8=8 WHERE COD=5"); }

  SalesTab& Tab() { return app_->Main.Sales; }

  void Pick(MonthView& month, const Date& day) {
    Do([&] { month.UserPick(day); });
  }

  /// Sold lines a to f, of them b to d within the shift and a and e at its very ends; their orders A to E, and a return
  /// R; deletions u to w, the last of another day. A line's price tells it from all others in a total.
  void Fill() {
    shop_.Sql(
        "INSERT INTO PROD (NAME,COD,TER,PERS,REZ,NUM,N1,N4,N6,KOL,PRISE,SKID,SUM2,DATETIME) VALUES "
        "('a',1,1,3,5,11,0,3,1,1000,1000,0,0,'2026-11-12 08:00:00'),"
        "('b',1,1,3,5,12,1,3,1,1000,2000,500,0,'2026-11-12 08:00:01'),"
        "('c',2,2,4,0,13,2,1,NULL,1000,4000,0,0,'2026-11-12 12:00:00'),"
        "('d',1,2,3,0,13,0,2,2,1000,8000,0,0,'2026-11-13 07:59:58'),"
        "('e',2,1,4,5,14,1,3,2,1000,16000,0,0,'2026-11-13 07:59:59'),"
        "('f',3,1,3,0,15,0,3,NULL,1000,32000,0,0,'2026-11-01 10:00:00')");
    shop_.Sql(
        "INSERT INTO KASSA (OPER,NUM,TER,PERS,N4,N5,N6,SUM1,SKID,SUM2,DAT,TIM) VALUES "
        "('A',11,1,3,3,5,1,1,0,0,'2026-11-12 08:00:00','2026-11-20'),"
        "('B',12,1,3,3,5,1,2,0.5,0,'2026-11-12 08:00:01','2026-11-20'),"
        "('C',13,2,4,1,0,NULL,4,0,0,'2026-11-13 07:59:58','2026-11-20'),"
        "('D',14,1,4,3,5,NULL,8,0,0,'2026-11-13 07:59:59','2026-11-20'),"
        "('E',15,1,3,2,0,2,16,0,0,'2026-11-01 10:00:00','2026-11-20'),"
        "('R',16,2,4,3,5,NULL,-1,0,0,'2026-11-12 09:00:00','2026-11-20')");
    shop_.Sql(
        "INSERT INTO SPION (NAME,COD,KOL,PRISE,DATETIME,TER,KAS,REZ) VALUES "
        "('u',1,'1','1','12.11.2026 09:00:00',1,12,0),('v',2,'1','1','12.11.2026 10:00:00',2,3,0),"
        "('w',1,'1','1','01.11.2026 10:00:00',1,12,0)");
  }

  /// The names in the rows, one after another.
  static std::string Rows(const DataGrid& grid, int column) {
    std::string names;
    for (int row = 1; row <= grid.Rows(); ++row) names += grid.CellText(row, column);
    return names;
  }
};

/// What the shift gives, and what the whole period does.
struct ByPeriod {
  const char* shift;
  const char* whole;
  const char* Of(bool dated) const { return dated ? shift : whole; }
};

TEST_F(Sales, WhatEachFilterShowsAndSaves) {
  Fill();
  Start();
  SalesTab& tab = Tab();
  struct Case {
    const char* word;  ///< in the file's name
    std::vector<std::pair<Control*, const char*>> set;
    Button* button;
    ByPeriod sold, deleted, ordered;  ///< nullptr: as the filter before has left them
    ByPeriod total, quantity;
    const char* info;   ///< behind the day
    const char* title;  ///< of the file, but for the day
  };
  const ByPeriod kNone = {"", ""}, kKept = {nullptr, nullptr}, kGone = {"uv", "uvw"}, kOrders = {"BC", "EABCD"};
  const char* const kFiscal = "ОПЛАЧЕННЫЕ ПО КАССЕ ЗАКАЗЫ ЗА {}";
  // clang-format off
  const Case kCases[] = {
      {"Data", {{&tab.Combo2, "Всего"}}, &tab.CmdDat, {"bcd", "fabcde"}, kGone, kOrders, {"13,50", ""}, kNone,
       "", "ПРОДАЖИ ТОВАРА ЗА {}"},
      {"Data", {{&tab.Combo2, "Алкоголь"}}, &tab.CmdDat, {"b", "be"}, kGone, kOrders, {"1,50", ""}, kNone,
       " Алкоголь", "ПРОДАЖИ ТОВАРА ЗА {} (Алкоголь)"},
      {"Data", {{&tab.Combo2, "Сигареты"}}, &tab.CmdDat, {"c", "c"}, kGone, kOrders, {"4,00", ""}, kNone,
       " Сигареты", "ПРОДАЖИ ТОВАРА ЗА {} (не Акциз)"},
      {"Data", {{&tab.Combo2, "НЕакциз"}}, &tab.CmdDat, {"d", "fad"}, kGone, kOrders, {"8,00", ""}, kNone,
       " НЕ акциз", "ПРОДАЖИ ТОВАРА ЗА {}"},
      {"Term", {{&tab.Text7, "1"}}, &tab.CmdTerm, {"b", "fabe"}, {"u", "uw"}, {"B", "EABD"}, {"1,50", "50,50"}, kNone,
       "", "ПРОДАЖИ ПО ТЕРМИНАЛУ №1 ЗА {}"},
      {"Ofc", {{&tab.Text3, "3"}}, &tab.CmdOfc, {"bd", "fabd"}, {"v", "v"}, {"B", "EAB"}, {"9,50", "42,50"}, kNone,
       "", "ПРОДАЖИ ПО КОДУ ОФИЦИАНТА №3 ЗА {}"},
      {"DKart", {{&tab.Text5, "5"}}, &tab.CmdDKart, {"b", "abe"}, kKept, {"B", "ABD"}, {"2,00", "19,00"}, kNone,
       "", "ПРОДАЖИ ПО ДИСКОНТНОЙ КАРТЕ №5 ЗА {}"},
      {"NeOpl", {}, &tab.CmdNOpl, {"cd", "cd"}, kKept, {"C", "EC"}, {"12,00", "12,00"}, {"2,000", "2,000"},
       "", "ProdNeOpl_20261112_100000"},
      {"Fisk", {{&tab.CheckFP1, "on"}, {&tab.CheckFP2, "off"}}, &tab.CmdFisk, {"b", "ab"}, kKept, {"B", "EAB"},
       {"1,50", "2,50"}, {"1,000", "2,000"}, " фискальные ФП-1:Акцизный", kFiscal},
      {"Fisk", {{&tab.CheckFP1, "off"}, {&tab.CheckFP2, "on"}}, &tab.CmdFisk, {"d", "de"}, kKept, {"B", "EAB"},
       {"8,00", "24,00"}, {"1,000", "2,000"}, " фискальные ФП-2:ЕдНалог", kFiscal},
      {"Fisk", {{&tab.CheckFP1, "on"}, {&tab.CheckFP2, "on"}}, &tab.CmdFisk, {"bd", "abde"}, kKept, {"B", "EAB"},
       {"9,50", "26,50"}, {"2,000", "4,000"}, " фискальные ВСЕ", kFiscal},
      {"Kod", {{&tab.Text1, "1"}}, &tab.CmdFiltr, {"bd", "abd"}, {"u", "uw"}, kKept, {"9,50", "10,50"},
       {"2,000", "3,000"}, "", "ПРОДАЖИ ТОВАРА (КОД=1) ЗА {}"}};
  // clang-format on
  // Filters that a table has no use for are off.
  const std::vector<Button*> kOff[] = {
      {}, {&tab.CmdNOpl, &tab.CmdFilCheck, &tab.CmdDKart}, {&tab.CmdFilCheck, &tab.CmdFiltr}};
  DataGrid* const kGrids[] = {&tab.DataGrid3, &tab.DataGrid11, &tab.DataGrid2};
  for (const bool dated : {true, false}) {
    if (!dated) Click(tab.CmdAll);
    std::string deleted, ordered;
    for (std::size_t grid = 0; grid < 3; ++grid) {
      Click(tab.CmdDG.at(grid));
      EXPECT_EQ(desktop_.Focused(), kGrids[grid]);
      for (DataGrid* one : kGrids) EXPECT_EQ(one->IsUsable(), one == kGrids[grid]);
      EXPECT_EQ(tab.CmdFilCheck.Enabled(), grid == 0);
      for (const Case& one : kCases) {
        SCOPED_TRACE(fmt::format("{}{}, grid {}, {}", one.word, one.info, grid, dated));
        const bool everything = one.button == &tab.CmdDat && !dated;
        EXPECT_EQ(one.button->Enabled() || everything, std::ranges::count(kOff[grid], one.button) == 0);
        if (!one.button->Enabled() && !everything) continue;
        for (const auto& [control, value] : one.set) Type(*control, value);
        Click(everything ? tab.CmdAll : *one.button);
        if (one.deleted.shift != nullptr) deleted = one.deleted.Of(dated);
        if (one.ordered.shift != nullptr) ordered = one.ordered.Of(dated);
        const std::string rows[] = {one.sold.Of(dated), deleted, ordered};
        EXPECT_EQ(Rows(*kGrids[grid], grid == 2 ? 4 : 1), rows[grid]);
        EXPECT_EQ(Rows(tab.DataGrid4, 4), ordered);
        EXPECT_EQ(tab.LblSum.Caption(), one.total.Of(dated));
        EXPECT_EQ(tab.LblKol.Caption(), one.quantity.Of(dated));
        std::string info = (dated ? "12.11.2026" : "весь период") + std::string(one.info);
        if (everything) info = "за весь период" + (*one.info == '\0' ? "" : ":" + std::string(one.info));
        EXPECT_EQ(tab.LblInf.Caption(), info);
        if (grid != 0) continue;
        const std::string path =
            fmt::format("C:\\Korvina\\Report\\Prod{}_20261112_100000.csv", everything ? "ALL" : one.word);
        Click(tab.CmdFileCSV);
        desktop_.Expect("Выгрузка в файл " + path + "\nуспешно завершена!", BoxAnswer::kOk, BoxIcon::kExclamation,
                        "DESKOR");
        Click(tab.CmdFileCSV);
        std::string title = fmt::format(fmt::runtime(one.title), dated ? "12.11.2026" : "весь период");
        if (everything) {
          title.replace(0, title.find("весь период") + std::string("весь период").size(),
                        "ТАБЛИЦА ПРОДАЖ ЗА ПЕРИОД: с 01.11.2026 10:00:00 по 12.11.2026 10:00:00");
        }
        EXPECT_TRUE(FileBytes(path).starts_with(ToWindows1251(";" + title + "\r\n"))) << title;
      }
    }
  }
  EXPECT_FALSE(tab.CmdDat.Enabled());
}

class LiteSales : public Sales {
 protected:
  LiteSales() : Sales(Stage::kLite) {}
};

TEST_F(LiteSales, WhatEachFilterShows) {
  Fill();
  Start();
  KassaLiteTab& tab = app_->Main.KassaLite;
  struct Case {
    TextBox* field;
    const char* value;
    Button* button;
    ByPeriod rows;
    const char* total;  ///< of the shift; the whole period has none
    const char* info;   ///< behind the day
  };
  const Case kCases[] = {{nullptr, "", &tab.CmdDatLite, {"BC", "EABCD"}, "4,50", ""},
                         {&tab.Text4, "1", &tab.CmdTermLite, {"B", "EABD"}, "1,50", " по кассе №1"},
                         {&tab.Text8, "3", &tab.CmdOfcLite, {"B", "EAB"}, "1,50", " по кассиру №3"},
                         {&tab.Text9, "5", &tab.CmdDKartLite, {"B", "ABD"}, "0,50", " по карте №5"},
                         {nullptr, "", &tab.CmdFiskLite, {"B", "EAB"}, "1,50", " фискальные"}};
  for (const bool dated : {true, false}) {
    for (const Case& one : kCases) {
      SCOPED_TRACE(fmt::format("{} {}", one.button->Name(), dated));
      const bool whole = one.button == &tab.CmdDatLite && !dated;
      if (one.field != nullptr) {
        Type(*one.field, "к1");
        desktop_.Expect(kNotWhole, BoxAnswer::kOk, BoxIcon::kCritical);
        Click(*one.button);
        EXPECT_EQ(desktop_.Focused(), one.field);
        Type(*one.field, "1,5");
        desktop_.Expect("Неправильно введена дата!", BoxAnswer::kOk, BoxIcon::kCritical);
        Click(*one.button);
        EXPECT_EQ(tab.LblInfLite.Caption(), kWorking);
        Type(*one.field, one.value);
      }
      Click(whole ? tab.CmdAllLite : *one.button);
      EXPECT_EQ(Rows(tab.DataGrid7, 0), one.rows.Of(dated));
      EXPECT_EQ(tab.LblSumLite.Caption(), dated ? one.total : "");
      EXPECT_EQ(tab.LblInfLite.Caption(),
                whole ? "за весь период" : std::string(dated ? "12.11.2026" : "весь период") + one.info);
      for (TextBox* other : {&tab.Text4, &tab.Text8, &tab.Text9}) {
        EXPECT_TRUE(whole || other->Text() == (other == one.field ? one.value : ""));
      }
    }
  }
}

TEST_F(Sales, AFiscalFilterKeepsToThePeriodLastShown) {
  Start();
  SalesTab& tab = Tab();
  Type(tab.CheckFP1, "on");
  Click(tab.CmdPlus);
  Pick(tab.Month0, {2026, 11, 1});
  for (TextBox* box : {&tab.Text1, &tab.Text2, &tab.Text3, &tab.Text5, &tab.Text7}) Type(*box, "7");
  Click(tab.CmdFisk);
  for (TextBox* box : {&tab.Text1, &tab.Text2, &tab.Text3, &tab.Text5, &tab.Text7}) EXPECT_EQ(box->Text(), "");
  EXPECT_EQ(app_->TheSession.ShiftPeriod.From, "2026-11-12 08:00:00");
  EXPECT_EQ(tab.LblInf.Caption(), "01.11.2026 фискальные ФП-1:Акцизный");
  // All others count the day picked at once.
  Click(tab.CmdNOpl);
  EXPECT_EQ(app_->TheSession.ShiftPeriod.From, "2026-11-01 08:00:00");
  Click(tab.CmdPlus);
  Pick(tab.Month0, {2026, 11, 2});
  Type(tab.Text7, "1");
  Click(tab.CmdTerm);
  EXPECT_EQ(app_->TheSession.ShiftPeriod.From, "2026-11-02 08:00:00");
  for (Button* query : {&tab.CmdDat, &tab.CmdAll}) {
    Click(tab.CmdPlus);
    EXPECT_TRUE(tab.Month0.Visible());
    Click(*query);
    EXPECT_FALSE(tab.Month0.Visible());
  }
}

TEST_F(Sales, AnImpossibleDateKeepsThePeriod) {
  Start();
  for (const char* text : {"весь период", "31.02.2026", ""}) {
    Tab().TextDate.Caption = text;
    Click(Tab().CmdDat);
    EXPECT_EQ(app_->TheSession.ShiftPeriod.From, "2026-11-12 08:00:00") << text;
    EXPECT_EQ(Tab().LblInf.Caption(), text);
  }
}

TEST_F(Sales, FieldsThatHoldNoNumberAreRefused) {
  Start();
  SalesTab& tab = Tab();
  struct Field {
    TextBox* box;
    Button* button;
    const char* message;
  };
  const Field kFields[] = {{&tab.Text7, &tab.CmdTerm, kNotWhole},
                           {&tab.Text3, &tab.CmdOfc, kNotWhole},
                           {&tab.Text1, &tab.CmdFiltr, kNotWhole},
                           {&tab.Text5, &tab.CmdDKart, kNotWhole},
                           {&tab.Text2, &tab.CmdFilCheck, "Введите номер заказа!"},
                           {&tab.Text7, &tab.CmdFilCheck, "Введите номер терминала!"}};
  for (const Field& field : kFields) {
    SCOPED_TRACE(field.button->Name());
    Type(tab.Text2, "12");
    Type(*field.box, "1.5");
    tab.LblInf.Caption = "как было";
    desktop_.Expect(field.message, BoxAnswer::kOk, BoxIcon::kCritical);
    Click(*field.button);
    EXPECT_EQ(field.box->Text(), "");
    EXPECT_EQ(desktop_.Focused(), field.box);
    EXPECT_EQ(tab.LblInf.Caption(), "как было");
    EXPECT_TRUE(faults_.Statements().empty());
    if (field.button == &tab.CmdFilCheck) continue;
    // A fraction is a number, but none that the server takes.
    Type(*field.box, "1,5");
    desktop_.ExpectRuntimeError();
    Click(*field.button);
    EXPECT_EQ(tab.LblInf.Caption(), kWorking);
    faults_.Forget();
  }
  desktop_.Expect("Выберите фискальный регистратор!", BoxAnswer::kOk, BoxIcon::kNone, "DESKOR");
  Click(tab.CmdFisk);
  EXPECT_TRUE(faults_.Statements().empty());
}

TEST_F(Sales, TheLastTwoDigitsNameTheTerminalOfAnOrder) {
  Start();
  SalesTab& tab = Tab();
  for (const auto& [typed, used] : {std::pair{"3", 3}, {"103", 3}, {"256", 56}, {"1,5", 0}}) {
    faults_.Forget();
    Type(tab.Text2, "12");
    Type(tab.Text7, typed);
    for (TextBox* box : {&tab.Text1, &tab.Text3, &tab.Text5}) Type(*box, "7");
    Press(tab.Text2, "Enter");
    EXPECT_NE(faults_.Statements().at(0).find(fmt::format(" TER={} ", used)), std::string::npos) << typed;
    EXPECT_EQ(tab.Text1.Text() + tab.Text3.Text() + tab.Text5.Text(), "");
    EXPECT_EQ(tab.Text7.Text(), typed);
    EXPECT_EQ(tab.LblInf.Caption(), "заказ № 12");
  }
  Type(tab.Text7, "-5");
  desktop_.ExpectRuntimeError();
  Click(tab.CmdFilCheck);
}

TEST_F(Sales, EscInAFieldPutsTheWindowAway) {
  Start();
  const std::pair<Control*, bool> kEsc[] = {{&Tab().Text1, true},   {&Tab().Text2, true},     {&Tab().Text3, true},
                                            {&Tab().Text5, false},  {&Tab().CmdFiltr, true},  {&Tab().Text7, false},
                                            {&Tab().CmdDat, false}, {&Tab().DataGrid3, false}};
  for (const auto& [control, hides] : kEsc) {
    app_->Main.Show();
    Press(*control, "Esc");
    EXPECT_NE(app_->Main.IsVisible(), hides) << control->Name();
  }
  // On the order detail Enter in the product's field has no button to press.
  {
    const test::Told told(Tab().LblInf);
    Click(Tab().CmdDG[2]);
    EXPECT_TRUE(told.Text.starts_with(std::string("Caption=") + kWorking)) << told.Text;
  }
  faults_.Forget();
  Press(Tab().Text1, "Enter");
  EXPECT_TRUE(faults_.Statements().empty());
}

TEST_F(Sales, AWholePeriodThatFailsLeavesWhatWasShown) {
  Start();
  SalesTab& tab = Tab();
  faults_.FailAt(2);
  desktop_.ExpectRuntimeError();
  Click(tab.CmdAll);
  EXPECT_FALSE(app_->TheSession.PeriodAll);
  EXPECT_TRUE(tab.CmdDat.Enabled());
  EXPECT_EQ(tab.TextDate.Caption(), "12.11.2026");

  Click(tab.CmdAll);
  faults_.FailAt(1);
  desktop_.ExpectRuntimeError();
  Click(tab.CmdAll);
  EXPECT_EQ(tab.TextDate.Caption(), "весь период");
}

// Files

TEST_F(Sales, TheFolderOfAFileIsChosenFirst) {
  Fill();
  Start();
  SalesTab& tab = Tab();
  Click(tab.CmdFileCSV);
  EXPECT_TRUE(tab.Dir1.Visible() && tab.Drive1.Visible());
  EXPECT_EQ(desktop_.Focused(), &tab.Dir1);
  Press(tab.Dir1, "Esc");
  EXPECT_FALSE(tab.Dir1.Visible() || tab.Drive1.Visible());

  std::filesystem::create_directories(drives_.ToNative("D:\\"));
  Click(tab.CmdFileCSV);
  Type(tab.Drive1, "D:");
  EXPECT_EQ(tab.Dir1.Path(), "D:\\");
  desktop_.Expect("Выгрузка в файл D:\\ProdData_20261112_100000.csv\nуспешно завершена!");
  Click(tab.CmdFileCSV);
  EXPECT_TRUE(std::filesystem::exists(drives_.ToNative("D:\\ProdData_20261112_100000.csv")));
  EXPECT_EQ(tab.DataGrid3.Row(), 1);
}

TEST_F(Sales, WhatCannotBeWrittenLeavesNoFile) {
  Fill();
  shop_.Sql("UPDATE SPION SET KOL='1.000' WHERE NAME='v'");
  Start();
  SalesTab& tab = Tab();
  Click(tab.CmdFileCSV);
  Do([&] { tab.Dir1.UserOpen("C:\\Нет такой папки"); });
  desktop_.ExpectRuntimeError();
  Click(tab.CmdFileCSV);
  EXPECT_TRUE(tab.Dir1.Visible());  // another folder can be chosen at once
  Do([&] { tab.Dir1.UserOpen("C:\\Korvina\\Report"); });

  // A dot is no decimal mark here: the second deletion is no number.
  Click(tab.CmdDG[1]);
  desktop_.ExpectRuntimeError();
  Click(tab.CmdFileCSV);
  EXPECT_TRUE(std::filesystem::is_empty(drives_.ToNative("C:\\Korvina\\Report")));

  shop_.Sql("DELETE FROM SPION");
  desktop_.Expect("Нет данных!", BoxAnswer::kOk, BoxIcon::kCritical);
  Click(tab.CmdFileCSV);
  EXPECT_FALSE(tab.Dir1.Visible());
}

TEST(SalesFiles, NamesBearTheMomentWhateverTheHour) {
  EXPECT_EQ(FileStamp("15.11.2026 19:05:01"), "20261115_190501");
  EXPECT_EQ(FileStamp("15.11.2026 9:05:01"), "20261115_090501");
  EXPECT_EQ(FileStamp("15.11.2026"), "20261115_0");
}

// Clearing and annulling

TEST_F(Sales, DeletionsAreTrimmedAboveAThousandRows) {
  for (const auto& [rows, left] : {std::pair{1000, 1000}, {1001, 102}}) {
    SCOPED_TRACE(rows);
    shop_.Sql("DELETE FROM SPION");
    // Every row has a second of its own but the first two, which share theirs with the last one.
    shop_.Sql(
        fmt::format("INSERT INTO SPION SELECT seq,'Чай','1,000','10,00',DATE_FORMAT('2026-11-20 10:00:00'+INTERVAL "
                    "IF(seq<3,{0},seq) SECOND,'%d.%m.%Y %T'),1,5,7 FROM {1}",
                    rows, test::Numbers(rows)));
    shop_.Sql("INSERT INTO PROD (COD,DATETIME) VALUES (1,'2026-11-05 23:59:59')");
    Start();
    Click(app_->Main.mnuClearProd);
    Type(app_->Clear.Check2, "on");
    desktop_.Expect("Удалить записи по 23:59:59 05.11.2026 ?", BoxAnswer::kOk, BoxIcon::kQuestion, "KORVINA");
    desktop_.Expect("Удалены записи по 23:59:59 05.11.2026", BoxAnswer::kOk, BoxIcon::kExclamation, "KORVINA");
    Click(app_->Clear.CmdDel);
    EXPECT_EQ(app_->Clear.LabelProd.Caption(), "В таблице продаж нет записей!");  // behind the last box
    EXPECT_EQ(shop_.Value("SELECT CONCAT_WS('|',COUNT(*),MIN(COD),MAX(REZ)) FROM SPION"),
              fmt::format("{}|1|{}", left, left == rows ? 7 : 0));
    app_.reset();
  }
}

TEST_F(Sales, AnAnnulmentIsLoggedBeforeTheLineGoes) {
  shop_.Sql("INSERT INTO CHECK3 (COD,NAME,KOL,PRISE,COST) VALUES (6,'Сок \\'Добрый\\'',1,9,9)");
  Start();
  Click(app_->Main.mnuDelCheck);
  frmDelChek& window = app_->DelChek;
  Click(window.CmdKas[2]);
  EXPECT_TRUE(window.Timer1.Enabled());
  // A quote in the name breaks the log: the line stays.
  desktop_.ExpectRuntimeError();
  Press(window.DataGrid1, "Enter");
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM CHECK3"), "1");

  // Nothing prolongs the time that a receipt stays in view, not even another press.
  {
    const test::Told timer(window.Timer1);
    Do([&] { window.DeleteCheckRow(77); });
    Click(window.CmdKas[2]);
    EXPECT_EQ(timer.Text, "");
  }
  Do([&] { window.Timer1.UserFire(); });
  EXPECT_FALSE(window.Timer1.Enabled());

  // A terminal without a table: nothing of another one's receipt is left under its name.
  shop_.Sql("DROP TABLE CHECK9");
  Click(window.CmdKas[2]);
  desktop_.ExpectRuntimeError();
  Click(window.CmdKas[8]);
  EXPECT_EQ(window.DataGrid1.Caption(), "Касса 9");
  EXPECT_EQ(window.DataGrid1.Rows(), 0);

  Click(window.CmdKas[2]);
  EXPECT_EQ(window.DataGrid1.Rows(), 1);
  Do([&] { app_->Main.Close(); });
  EXPECT_FALSE(window.RsCheck.IsOpen());
}

}  // namespace
}  // namespace zrt
