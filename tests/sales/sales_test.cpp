#include <fmt/format.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "sales/sales_statements.h"
#include "support/program_test.h"

namespace zrt {
namespace {

using test::ProgramTest;
using test::Stage;

constexpr const char* kNotWhole = "Введите целое числовое значение!";
constexpr const char* kWrongDate = "Неправильно введена дата!";
constexpr const char* kWorking = "обработка запроса...";

/// The whole program on a base that a test fills; the shift of 12.11. from 8:00 is on.
class Sales : public ProgramTest {
 protected:
  explicit Sales(Stage stage = Stage::kPlain) : ProgramTest(stage) { shop_.Sql("UPDATE CONST SET N8=8 WHERE COD=5"); }

  SalesTab& Tab() { return app_->Main.Sales; }
  KassaLiteTab& Lite() { return app_->Main.KassaLite; }

  void Press(Control& control, Key::Code code) {
    Do([&] { desktop_.PressKey(control, Key{code, {}}); });
  }

  /// What was sent since the last call, with short names for what doesn't differ.
  std::vector<std::string> Sent() {
    const Shift& shift = app_->TheSession.ShiftPeriod;
    const std::pair<std::string_view, std::string_view> kShort[] = {
        {sales::kSales, "sales"}, {sales::kOrders, "orders"}, {shift.From, "F"}, {shift.To, "U"}};
    std::vector<std::string> sent = faults_.Statements();
    for (std::string& statement : sent) {
      for (const auto& [text, name] : kShort) {
        for (auto at = statement.find(text); at != std::string::npos; at = statement.find(text)) {
          statement.replace(at, text.size(), name);
        }
      }
    }
    faults_.Forget();
    return sent;
  }
};

TEST_F(Sales, AFiscalFilterKeepsToThePeriodLastShown) {
  Start();
  SalesTab& tab = Tab();
  desktop_.UserAction([&] { tab.CheckFP1.UserTick(true); });
  Click(tab.CmdPlus);
  desktop_.UserAction([&] { tab.Month0.UserPick({2026, 11, 1}); });
  Type(tab.Text5, "7");
  Click(tab.CmdFisk);
  EXPECT_EQ(tab.Text5.Text(), "");
  EXPECT_EQ(app_->TheSession.ShiftPeriod.From, "2026-11-12 08:00:00");
  EXPECT_EQ(tab.LblInf.Caption(), "01.11.2026 фискальные ФП-1:Акцизный");
  Click(tab.CmdNOpl);
  EXPECT_EQ(app_->TheSession.ShiftPeriod.From, "2026-11-01 08:00:00");
  // All others count the day picked at once.
  Click(tab.CmdPlus);
  desktop_.UserAction([&] { tab.Month0.UserPick({2026, 11, 2}); });
  Type(tab.Text7, "1");
  Click(tab.CmdTerm);
  EXPECT_EQ(app_->TheSession.ShiftPeriod.From, "2026-11-02 08:00:00");
}

TEST_F(Sales, AQueryPutsTheCalendarAwayAndWhatStoodInTheTotals) {
  shop_.Sql(
      "INSERT INTO PROD (COD,NAME,KOL,PRISE,SKID,TER,DATETIME,N1) VALUES (1,'Чай',1500,2000,0,1,'2026-11-12 "
      "09:00:00',2),"
      "(2,'Сок',1000,5000,0,1,'2026-11-12 09:00:00',0)");
  Start();
  SalesTab& tab = Tab();
  desktop_.UserAction([&] { tab.Combo2.UserChoose("Сигареты"); });
  for (Button* button : {&tab.CmdDat, &tab.CmdAll}) {
    SCOPED_TRACE(button->Name());
    Type(tab.Text1, "1");
    Click(tab.CmdFiltr);
    EXPECT_EQ(tab.LblKol.Caption(), "1,500");
    Click(tab.CmdPlus);
    EXPECT_TRUE(tab.Month0.Visible());
    Click(*button);
    EXPECT_FALSE(tab.Month0.Visible());
    EXPECT_EQ(tab.LblKol.Caption(), "");
    EXPECT_EQ(tab.LblSum.Caption(), button == &tab.CmdDat ? "3,00" : "");
  }
}

TEST_F(Sales, AnImpossibleDateKeepsThePeriod) {
  Start();
  SalesTab& tab = Tab();
  for (const char* text : {"весь период", "31.02.2026", "2026-11-12", ""}) {
    tab.TextDate.Caption = text;
    Click(tab.CmdDat);
    EXPECT_EQ(app_->TheSession.ShiftPeriod.From, "2026-11-12 08:00:00") << text;
    EXPECT_EQ(tab.LblInf.Caption(), text);
  }
}

TEST_F(Sales, FieldsThatHoldNoNumberAreRefused) {
  Start();
  SalesTab& tab = Tab();
  const std::pair<TextBox*, Button*> kFilters[] = {
      {&tab.Text7, &tab.CmdTerm}, {&tab.Text3, &tab.CmdOfc}, {&tab.Text1, &tab.CmdFiltr}, {&tab.Text5, &tab.CmdDKart}};
  for (const auto& [field, button] : kFilters) {
    for (const char* bad : {"", "абв", "12a", "1.5", "5'", "1;DROP TABLE PROD", "-"}) {
      SCOPED_TRACE(button->Name() + ": " + bad);
      Type(*field, bad);
      tab.LblInf.Caption = "как было";
      desktop_.Expect(kNotWhole, BoxAnswer::kOk, BoxIcon::kCritical);
      Click(*button);
      EXPECT_EQ(field->Text(), "");
      EXPECT_EQ(desktop_.Focused(), field);
      EXPECT_EQ(tab.LblInf.Caption(), "как было");
      EXPECT_TRUE(Sent().empty());
    }
    // A fraction is a number, but none that the server takes; so many digits are no product, person or till.
    Type(*field, "1,5");
    desktop_.ExpectRuntimeError();
    Click(*button);
    EXPECT_EQ(tab.LblInf.Caption(), kWorking);
    Type(*field, "9999999999");
    Click(*button);
    EXPECT_EQ(tab.DataGrid3.Rows(), 0);
    EXPECT_EQ(tab.LblSum.Caption(), "");
    EXPECT_EQ(tab.LblInf.Caption(), "12.11.2026");
    Sent();
  }
  desktop_.Expect("Выберите фискальный регистратор!", BoxAnswer::kOk, BoxIcon::kNone, "DESKOR");
  Click(tab.CmdFisk);
  EXPECT_TRUE(Sent().empty());
}

TEST_F(Sales, TheLastTwoDigitsNameTheTerminalOfAnOrder) {
  Start();
  SalesTab& tab = Tab();
  const std::pair<const char*, const char*> kTerminals[] = {{"3", "3"},           {"103", "3"}, {"256", "56"},
                                                            {"9999999999", "99"}, {"1,5", "0"}, {" 7", "7"}};
  for (const auto& [typed, used] : kTerminals) {
    Type(tab.Text2, "12");
    Type(tab.Text7, typed);
    Type(tab.Text5, "7");
    Press(tab.Text2, Key::kEnter);
    EXPECT_EQ(tab.Text5.Text(), "");
    const std::vector<std::string> sent = Sent();
    EXPECT_EQ(sent.at(0), fmt::format("sales WHERE NUM = 12 AND TER={} ORDER BY DATETIME", used)) << typed;
    EXPECT_TRUE(sent.at(1).starts_with(fmt::format("orders AND KASSA.NUM = 12 AND KASSA.TER={} ", used))) << sent.at(1);
    EXPECT_EQ(tab.LblInf.Caption(), "заказ № 12");
    EXPECT_EQ(tab.Text7.Text(), typed);
  }
  // No terminal is below zero.
  Type(tab.Text7, "-5");
  desktop_.ExpectRuntimeError();
  Click(tab.CmdFilCheck);
  EXPECT_TRUE(Sent().empty());

  Type(tab.Text7, "все");
  desktop_.Expect("Введите номер терминала!", BoxAnswer::kOk, BoxIcon::kCritical);
  Click(tab.CmdFilCheck);
  EXPECT_EQ(desktop_.Focused(), &tab.Text7);
  EXPECT_EQ(tab.Text7.Text(), "");
  Type(tab.Text2, "12'");
  desktop_.Expect("Введите номер заказа!", BoxAnswer::kOk, BoxIcon::kCritical);
  Click(tab.CmdFilCheck);
  EXPECT_EQ(desktop_.Focused(), &tab.Text2);
}

TEST_F(Sales, EachGridHasItsFilters) {
  Start();
  SalesTab& tab = Tab();
  struct Row {
    DataGrid* grid;
    bool not_closed, order, card, product;
  };
  const Row kRows[] = {{&tab.DataGrid3, true, true, true, true},
                       {&tab.DataGrid11, false, false, false, true},
                       {&tab.DataGrid2, true, false, true, false}};
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    Click(tab.CmdDG.at(i));
    EXPECT_EQ(desktop_.Focused(), kRows[i].grid);
    for (const Row& row : kRows) {
      EXPECT_EQ(row.grid->IsUsable(), row.grid == kRows[i].grid);
    }
    EXPECT_EQ(tab.CmdNOpl.Enabled(), kRows[i].not_closed);
    EXPECT_EQ(tab.CmdFilCheck.Enabled(), kRows[i].order);
    EXPECT_EQ(tab.CmdDKart.Enabled(), kRows[i].card);
    EXPECT_EQ(tab.CmdFiltr.Enabled(), kRows[i].product);
    EXPECT_TRUE(tab.DataGrid4.IsUsable());
  }
  // On the order detail Enter in the product's field has no button to press.
  Type(tab.Text1, "3");
  Sent();
  Press(tab.Text1, Key::kEnter);
  EXPECT_TRUE(Sent().empty());
}

TEST_F(Sales, EscInAFieldPutsTheWindowAway) {
  Start();
  for (Control* control : std::initializer_list<Control*>{&Tab().Text1, &Tab().Text2, &Tab().Text3, &Tab().CmdFiltr}) {
    app_->Main.Show();
    Press(*control, Key::kEscape);
    EXPECT_FALSE(app_->Main.IsVisible()) << control->Name();
  }
  EXPECT_FALSE(desktop_.ExitCode());
  app_->Main.Show();
  for (Control* control :
       std::initializer_list<Control*>{&Tab().Text5, &Tab().Text7, &Tab().DataGrid3, &Tab().CmdDat}) {
    Press(*control, Key::kEscape);
    EXPECT_TRUE(app_->Main.IsVisible()) << control->Name();
  }
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

class LiteSales : public Sales {
 protected:
  LiteSales() : Sales(Stage::kLite) {}
};

TEST_F(LiteSales, EachFilterHasTheTrap) {
  Start();
  KassaLiteTab& tab = Lite();
  const std::pair<TextBox*, Button*> kFilters[] = {{nullptr, &tab.CmdDatLite},
                                                   {&tab.Text4, &tab.CmdTermLite},
                                                   {&tab.Text8, &tab.CmdOfcLite},
                                                   {nullptr, &tab.CmdFiskLite},
                                                   {&tab.Text9, &tab.CmdDKartLite}};
  for (const auto& [field, button] : kFilters) {
    SCOPED_TRACE(button->Name());
    if (field != nullptr) {
      Type(*field, "к1");
      desktop_.Expect(kNotWhole, BoxAnswer::kOk, BoxIcon::kCritical);
      Click(*button);
      EXPECT_EQ(desktop_.Focused(), field);
      Type(*field, "1,5");
      desktop_.Expect(kWrongDate, BoxAnswer::kOk, BoxIcon::kCritical);
      Click(*button);
      EXPECT_EQ(tab.LblInfLite.Caption(), kWorking);
      Type(*field, "1");
    }
    Click(*button);
    EXPECT_TRUE(tab.LblInfLite.Caption().starts_with("12.11.2026"));
  }
  faults_.FailAt(1);
  desktop_.ExpectRuntimeError();
  Click(tab.CmdAllLite);
  EXPECT_FALSE(app_->TheSession.PeriodAll);
}

// Files

class SalesFiles : public Sales {
 protected:
  static constexpr const char* kSold =
      "INSERT INTO PROD (COD,NAME,KOL,PRISE,SKID,SUM2,TER,PERS,DATETIME,REZ,NUM,N1,N4) VALUES "
      "(1,'Чай',1500,1234567,0,1851850,1,3,'2026-11-12 08:00:01',0,1,0,3)";

  /// The operator's second press: the file that appears in the folder, "" if none does.
  void Save(const std::string& name) {
    desktop_.Expect("Выгрузка в файл C:\\Korvina\\Report\\" + name + "\nуспешно завершена!", BoxAnswer::kOk,
                    BoxIcon::kExclamation, "DESKOR");
    Click(Tab().CmdFileCSV);
  }
  std::vector<std::string> Files() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_)) {
      if (!entry.is_directory()) names.push_back(entry.path().filename().string());
    }
    return names;
  }
};

TEST_F(SalesFiles, TheFolderIsChosenFirst) {
  shop_.Sql(kSold);
  Start();
  SalesTab& tab = Tab();
  Click(tab.CmdFileCSV);
  EXPECT_TRUE(tab.Dir1.Visible() && tab.Drive1.Visible());
  EXPECT_EQ(desktop_.Focused(), &tab.Dir1);
  Press(tab.Dir1, Key::kEscape);
  EXPECT_FALSE(tab.Dir1.Visible() || tab.Drive1.Visible());

  Click(tab.CmdFileCSV);
  Save("ProdData_20261112_100000.csv");
  EXPECT_FALSE(tab.Dir1.Visible());
  EXPECT_EQ(tab.DataGrid3.Row(), 1);

  // Enter on the folder is the second press; a second file in one second takes the place of the first.
  Click(tab.CmdFileCSV);
  desktop_.Expect("Выгрузка в файл C:\\Korvina\\Report\\ProdData_20261112_100000.csv\nуспешно завершена!");
  Press(tab.Dir1, Key::kEnter);
  EXPECT_EQ(Files(), std::vector<std::string>{"ProdData_20261112_100000.csv"});

  std::filesystem::create_directories(drives_.ToNative("D:\\"));
  Click(tab.CmdFileCSV);
  desktop_.UserAction([&] { tab.Drive1.UserChoose("D:"); });
  EXPECT_EQ(tab.Dir1.Path(), "D:\\");
  desktop_.Expect("Выгрузка в файл D:\\ProdData_20261112_100000.csv\nуспешно завершена!");
  Click(tab.CmdFileCSV);
  EXPECT_TRUE(std::filesystem::exists(drives_.ToNative("D:\\ProdData_20261112_100000.csv")));
}

TEST_F(SalesFiles, WhatCannotBeWrittenLeavesNoFile) {
  shop_.Sql(kSold);
  shop_.Sql(
      "INSERT INTO SPION VALUES (1,'Чай','1,000','120,50','12.11.2026 09:00:00',1,5,0),"
      "(2,'Сок','1.000','99,00','12.11.2026 09:01:00',1,5,0)");
  Start();
  SalesTab& tab = Tab();
  Click(tab.CmdFileCSV);
  desktop_.UserAction([&] { tab.Dir1.UserOpen("C:\\Нет такой папки"); });
  desktop_.ExpectRuntimeError();
  Click(tab.CmdFileCSV);
  EXPECT_TRUE(tab.Dir1.Visible());  // another folder can be chosen at once
  desktop_.UserAction([&] { tab.Dir1.UserOpen("C:\\Korvina\\Report"); });

  // A dot is no decimal mark here: the second deletion is no number.
  Click(tab.CmdDG[1]);
  ASSERT_EQ(tab.DataGrid11.Rows(), 2);
  desktop_.ExpectRuntimeError();
  Click(tab.CmdFileCSV);
  EXPECT_TRUE(Files().empty());

  // The server goes just before the table is read again.
  faults_.CutAt(1);
  desktop_.ExpectRuntimeError();
  Click(tab.CmdFileCSV);
  EXPECT_TRUE(Files().empty());
  shop_.Sql("UPDATE SPION SET KOL='1,000' WHERE COD=2");
  Save("Delete_20261112_100000.csv");
  EXPECT_EQ(tab.DataGrid11.Rows(), 2);

  shop_.Sql("DELETE FROM SPION");
  Click(tab.CmdFileCSV);
  desktop_.Expect("Нет данных!", BoxAnswer::kOk, BoxIcon::kCritical);
  Click(tab.CmdFileCSV);
  EXPECT_FALSE(tab.Dir1.Visible());
}

TEST_F(SalesFiles, NamesBearTheMomentWhateverTheHour) {
  EXPECT_EQ(FileStamp("15.11.2026 19:05:01"), "20261115_190501");
  EXPECT_EQ(FileStamp("15.11.2026 9:05:01"), "20261115_090501");
  EXPECT_EQ(FileStamp("15.11.2026 09:05:01"), "20261115_090501");
  EXPECT_EQ(FileStamp("15.11.2026"), "20261115_0");
}

// Clearing and annulling

TEST_F(Sales, DeletionsAreTrimmedAboveAThousandRows) {
  struct Size {
    int rows, left;
  };
  for (const Size& size : {Size{1000, 1000}, Size{1001, 102}}) {
    SCOPED_TRACE(size.rows);
    shop_.Sql("DELETE FROM SPION");
    // Every row has a second of its own but the first two, which share theirs with the last one.
    for (int row = 1; row <= size.rows; ++row) {
      const int second = row <= 2 ? size.rows : row;
      shop_.Sql(fmt::format("INSERT INTO SPION VALUES ({},'Чай','1,000','10,00','20.11.2026 10:{:02}:{:02}',1,5,7)",
                            row, second / 60, second % 60));
    }
    Start();
    Click(app_->Main.mnuClearProd);
    desktop_.UserAction([&] { app_->Clear.Check2.UserTick(true); });
    desktop_.Expect("Удалить записи по 23:59:59 05.11.2026 ?", BoxAnswer::kOk, BoxIcon::kQuestion, "KORVINA");
    desktop_.Expect("Удалены записи по 23:59:59 05.11.2026", BoxAnswer::kOk, BoxIcon::kExclamation, "KORVINA");
    Click(app_->Clear.CmdDel);
    EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM SPION"), std::to_string(size.left));
    EXPECT_EQ(shop_.Value("SELECT MIN(COD) FROM SPION"), "1");
    EXPECT_EQ(shop_.Value("SELECT MAX(REZ) FROM SPION"), size.left == size.rows ? "7" : "0");
    app_.reset();
  }
}

TEST_F(Sales, AnAnnulmentIsLoggedBeforeTheLineGoes) {
  shop_.Sql("INSERT INTO CHECK3 (COD,NAME,KOL,PRISE,COST) VALUES (5,'Чай',1.5,20,30),(6,'Сок \\'Добрый\\'',1,9,9)");
  Start();
  Click(app_->Main.mnuDelCheck);
  frmDelChek& window = app_->DelChek;
  Click(window.CmdKas[2]);

  /// Counts how often the time that a receipt stays in view is begun or ended.
  struct Clockwork final : ElementView {
    int turned = 0;
    void Show(const PropertyBase&) override { ++turned; }
  } clockwork;
  window.Timer1.SetView(&clockwork);
  clockwork.turned = 0;
  // The server dies between the log and the removal: the line is logged and stays.
  faults_.CutAt(2);
  desktop_.ExpectRuntimeError();
  Press(window.DataGrid1, Key::kEnter);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM SPION"), "1");
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM CHECK3"), "2");

  // A quote in the name breaks the log: the line stays.
  desktop_.UserAction([&] { window.DataGrid1.UserRow(2); });
  desktop_.ExpectRuntimeError();
  desktop_.UserAction([&] { window.DataGrid1.UserDblClick(); });
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM SPION"), "1");
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM CHECK3"), "2");

  // Nothing prolongs it while it runs, not even another press.
  desktop_.UserAction([&] { window.DeleteCheckRow(77); });
  desktop_.UserAction([&] { window.DataGrid1.UserRow(1); });
  EXPECT_EQ(clockwork.turned, 0);
  Click(window.CmdKas[2]);
  EXPECT_EQ(clockwork.turned, 0);
  window.Timer1.SetView(nullptr);

  // A terminal without a table: nothing of another one's receipt is left under its name.
  shop_.Sql("DROP TABLE CHECK9");
  desktop_.ExpectRuntimeError();
  Click(window.CmdKas[8]);
  EXPECT_EQ(window.DataGrid1.Caption(), "Касса 9");
  EXPECT_EQ(window.DataGrid1.Rows(), 0);
  Press(window.DataGrid1, Key::kEnter);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM SPION"), "1");

  Click(window.CmdKas[2]);
  EXPECT_EQ(window.DataGrid1.Rows(), 2);
  desktop_.UserAction([&] { app_->Main.Close(); });
  EXPECT_FALSE(window.RsCheck.IsOpen());
}

}  // namespace
}  // namespace zrt
