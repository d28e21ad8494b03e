// Files that the operator loads: the whole catalogue from a spreadsheet, lines of documents from text files that
// another installation has written.

#include <fmt/format.h>

#include <functional>
#include <string>
#include <vector>

#include "core/text.h"
#include "exchange/frm_exp_tov.h"
#include "exchange/frm_imp_tov.h"
#include "platform/workbook.h"
#include "support/program_test.h"

namespace zrt {
namespace {

using test::ProgramTest;
using Texts = std::vector<std::string>;

constexpr const char* kFolder = "C:\\Korvina\\Report";

class Import : public ProgramTest {
 protected:
  Import() {
    shop_.Sql(
        "INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,N5,N7,UKT) VALUES "
        "(1,1,'Чай',0,0,12050,'0',1,0,0,0,0,0,0,''),(2,1,'Вода',0,0,4000,'0',1,0,0,0,0,0,0,''),"
        "(3,1,'Квас, \"Рус\"',0,0,NULL,'0',1,0,0,0,0,0,0,'')");
    // Three of the second stand in the books, bought at 33.333 each.
    shop_.Sql("INSERT INTO JOURNAL (ID,DTYPE,DATEDOC,SUMM,RUN,REZ) VALUES (1,'-','2026-11-01 08:00:00',0,'OK',0)");
    shop_.Sql(
        "INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,KARD,DATEDOC,RUN,REZ) VALUES "
        "(1,1,2,3000,100000,3000,0,'2026-11-01 08:00:00',1,0)");
  }

  frmImpTov& Screen() { return app_->Import; }
  frmDocIN& Inventory() { return app_->StockDocuments.Inventory; }

  /// What is typed and pressed in the window once it is open.
  void InWindow(Button& opener, const std::function<void()>& work) {
    desktop_.InModal([&](Form& form) {
      work();
      form.Close();
    });
    Click(opener);
  }
  void Run(const std::string& path) {
    desktop_.UserAction([&] {
      Screen().TextPath.UserType(path);
      Screen().CmdRun.UserClick();
    });
  }
  /// Loads a file of these bytes into the document that `opener` belongs to.
  void Load(Button& opener, const std::string& bytes) {
    WriteFile("C:\\Korvina\\Report\\lines.txt", bytes);
    InWindow(opener, [&] { Run("C:\\Korvina\\Report\\lines.txt"); });
  }

  /// Loads the catalogue from this file, by the first or the second way, to its end or, without one, to an error.
  void LoadCatalogue(const std::string& path, bool ends = true, int way = 0) {
    InWindow(app_->Main.Catalogue.CmdImportTov, [&] {
      Click(Screen().Option1.at(static_cast<std::size_t>(way)));
      desktop_.ExpectInput("Введите пароль администратора:", "357218");
      if (ends) desktop_.Expect("Загрузка справочника завершена!");
      if (!ends) desktop_.ExpectRuntimeError();
      Run(path);
      EXPECT_TRUE(!ends || Screen().ProgressBar1.Value() == 0);
      said_ = Screen().List1.Items();
    });
  }
  /// A workbook of these rows below the headers.
  std::string Book(const std::vector<Texts>& rows) {
    Workbook book;
    book.StatusBar = {""};
    book.Cell(1, 1, "Код");
    for (std::size_t row = 0; row < rows.size(); ++row) {
      for (std::size_t column = 0; column < rows[row].size(); ++column) {
        if (rows[row][column].empty()) continue;
        book.Cell(static_cast<int>(row) + 2, static_cast<int>(column) + 1, rows[row][column]);
      }
    }
    book.SaveAs(drives_.ToNative("C:\\Korvina\\Report\\book.xlsx"));
    return "C:\\Korvina\\Report\\book.xlsx";
  }
  Texts Catalogue() {
    return shop_.Column(
        "SELECT CONCAT_WS('|',COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N5,N7,N4,T1,UKT) FROM TOVAR ORDER BY "
        "ID");
  }
  Texts Counts() {
    return shop_.Column("SELECT CONCAT_WS('|',COD,NAME,OST,KOL,PRC,PRCR,DOC) FROM DOCINVENT ORDER BY ID");
  }

  Texts said_;
};

TEST_F(Import, TheWindowSaysWhatItLoads) {
  WriteFile("C:\\Korvina\\Report\\a.txt", "");
  Start("sprav");
  const Texts kTransfer = {"*.txt*", "Загрузка перемещения из файла .txt", "Загрузить остатки"};
  const Texts kModes[] = {{"*.xls*", "Импорт Справочника Товаров из файла .xls", "Переписать Справочник Товаров"},
                          {"*.txt*", "Загрузка инвентаризации из файла .txt", "Загрузить остатки"},
                          kTransfer,
                          kTransfer};
  for (int mode = 0; mode < 4; ++mode) {
    desktop_.InModal([&](Form& form) {
      EXPECT_EQ((Texts{Screen().File1.Pattern(), form.Caption(), Screen().CmdRun.Caption()}), kModes[mode]);
      EXPECT_EQ(Screen().Option1[0].IsShown(), mode == 0);
      EXPECT_EQ((Texts{Screen().Dir1.Path(), Screen().File1.Path()}), (Texts{kFolder, kFolder}));
      desktop_.Expect("Файл НЕ выбран!");
      Click(Screen().CmdRun);
      Type(Screen().File1, "a.txt");
      EXPECT_EQ(Screen().TextPath.Text(), "C:\\Korvina\\Report\\a.txt");
      Type(Screen().Drive1, "D:");
      Type(Screen().File1, "b.txt");
      EXPECT_EQ(Screen().TextPath.Text(), "D:\\b.txt");
      Type(Screen().Dir1, "C:\\Korvina");
      EXPECT_EQ(Screen().File1.Path() + Screen().File1.FileName(), "C:\\Korvina");
      Press(Screen().TextPath, "Esc");
    });
    Do([&] { Screen().Open(mode); });
  }
}

TEST_F(Import, ACatalogueTakesThePlaceOfTheOld) {
  const std::string path = Book({
      {"10", "  Кофе  ", "12050", " 4820000000017 ", "1", "2", "5", "77", "21", " 2101 ", " НАПИТКИ "},
      {"0", "нулевой"},
      {"1000000", "слишком большой"},
      {"код", "не число"},
      {"", "без кода"},
      {"11", "\u00A0"},  // the count takes it for a name
      {"999999", std::string(60, 'n'), "1250,4", std::string(30, '7'), "", "", "", "", "", std::string(30, '2'),
       std::string(60, 'g')},
      {"12", "Сок"},
      {"12", "Сок"},
      {"13", ""},
      {"14", "после пустого"},
  });
  for (const int way : {0, 1}) {
    Start("sprav");
    LoadCatalogue(path, true, way);
    EXPECT_EQ(Catalogue(), (Texts{"10|1|Кофе|0|0|12050|4820000000017|1|5|2|21|0|0|77|НАПИТКИ|2101",
                                  "999999|1|" + std::string(50, 'n') + "|0|0|1250|" + std::string(20, '7') +
                                      "|0|0|0|0|0|0|0|" + std::string(50, 'g') + "|" + std::string(24, '2'),
                                  "12|1|Сок|0|0|0|0|0|0|0|0|0|0|0|ТОВАР|", "12|1|Сок|0|0|0|0|0|0|0|0|0|0|0|ТОВАР|"}));
    EXPECT_EQ(said_, (Texts{way == 0 ? "Microsoft Excel" : "Open Office", "файл содержит 9 строк", "загрузка...",
                            "пропущена строка 3 - неверный код товара", "пропущена строка 4 - неверный код товара",
                            "пропущена строка 5 - неверный код товара", "пропущена строка 6 - неверный код товара",
                            "пропущена строка 7 - пустое наименование", "загрузка завершена", "загружено 9 товаров"}));
    EXPECT_EQ(app_->Main.Catalogue.DataGrid1[0].Rows(), 3);  // one row for a code
    app_.reset();
  }
}

TEST_F(Import, OnlyThePasswordAndAWholeFileDeleteTheCatalogue) {
  const std::string path = Book({});
  Start("sprav");
  for (const char* password : {"", "1", "357218"}) {
    desktop_.StopAfter = *password == '3' ? 0 : -1;  // the reading is left
    InWindow(app_->Main.Catalogue.CmdImportTov, [&] {
      desktop_.ExpectInput("Введите пароль администратора:", password);
      if (*password != '3') desktop_.Expect("Пароль неверный!");
      Run(path);
    });
    EXPECT_EQ(Catalogue().size(), 3U);
  }
  desktop_.StopAfter = -1;
  WriteFile("C:\\bad.xls", "1;Чай;100\r\n");
  for (const char* unreadable : {"C:\\bad.xls", "C:\\missing.xls"}) {
    LoadCatalogue(unreadable, false);
    EXPECT_EQ(said_, Texts{"Microsoft Excel"});
    EXPECT_EQ(Catalogue().size(), 3U);
  }
  // Headers alone are a catalogue too.
  LoadCatalogue(path);
  EXPECT_TRUE(Catalogue().empty());
  EXPECT_EQ(said_.back(), "загружено 0 товаров");
}

TEST_F(Import, ARowThatCantBeTakenEndsTheLoadAndShowsWhatThereIs) {
  for (const Texts& bad :
       {Texts{"3", "#N/A"}, Texts{"3", "Квас", "1", "#REF!"}, Texts{"3", "О'Нил"}, Texts{"3", "Квас", "дорого"},
        Texts{"3", "Квас", "3000000000"}, Texts{"3", "Квас", "1", "", "", "", "40000"}}) {
    const std::string path = Book({{"1", "Хлеб"}, bad, {"2", "Сыр"}});
    Start("sprav");
    LoadCatalogue(path, false);
    EXPECT_EQ(shop_.Column("SELECT NAME FROM TOVAR"), Texts{"Хлеб"});
    EXPECT_EQ(app_->Main.Catalogue.DataGrid1[0].Rows(), 1);
    EXPECT_EQ(said_.back(), "загрузка...");
    app_.reset();
  }
}

TEST_F(Import, TheFirstBadCellIsNamed) {
  const std::string path = Book({{"1", "Хлеб", "1", "", "x", "x", "x"}});
  Start();
  const ProductSheet sheet(drives_, path, app_->TheSession.Format());
  try {
    sheet.InsertStatement(2, 1, "Хлеб");
    ADD_FAILURE();
  } catch (const FileError& error) {
    EXPECT_EQ(error.Path(), path + ", строка 2, колонка 5");
  }
}

TEST_F(Import, CountsOfAnInventory) {
  Start("jurn");
  Click(app_->Main.mnuDocIN);
  desktop_.Expect("Успешно загружено 5 строк");
  Load(Inventory().CmdDownlFakt,
       ToWindows1251("1,\" Чай \",1500\r\n2,\"Вода\",250\r\n\r\n77,\" нет такого \",9000\r\n2,\" Вода \",100\r\n"
                     "3,\" Квас, \"Рус\" \",7"));
  const Texts expected = {"1|Чай|0|1500|0|120500|-1", "2|Вода|3000|350|33333|40000|-1", "3|Квас, \"Рус\"|0|7|0|0|-1"};
  EXPECT_EQ(Counts(), expected);
  EXPECT_EQ(Inventory().DataGrid7.Rows(), 3);
  EXPECT_EQ(Inventory().LblSumR.Caption(), app_->TheSession.Format().FormatNumber((1.5 * 120.5) - 2.65 * 40, 2));
  // A mark of UTF-8 and its letters in the names do no harm.
  desktop_.Expect("Успешно загружено 1 строк");
  Load(Inventory().CmdDownlFakt,
       "\xEF\xBB\xBF"
       "1,\" Чай \",1\n");
  EXPECT_EQ(Counts()[0], "1|Чай|0|1501|0|120500|-1");
}

TEST_F(Import, ABrokenFileIsRefusedWhole) {
  Start("jurn");
  Click(app_->Main.mnuDocIN);
  for (const char* bytes : {"", "\r\n \r\n"}) {
    desktop_.Expect("Файл пустой!");
    Load(Inventory().CmdDownlFakt, bytes);
  }
  for (const char* last :
       {"2,\"Вода\"", "2,\"Вода", "2", "2,1500", "2,Вода,1500", "2,\"Вода\",1500,7", "два,\"Вода\",1", "2,\"Вода\",1.5",
        "2,\"Вода\",", ",\"Вода\",1", "2,\"Вода\",3000000000", "2;\"Вода\";1", "2,\"\xFF\xFE", "2,\",1"}) {
    SCOPED_TRACE(last);
    desktop_.ExpectRuntimeError();
    Load(Inventory().CmdDownlFakt, ToWindows1251(std::string("1,\"Чай\",1000\r\n") + last));
  }
  EXPECT_TRUE(Counts().empty());
}

TEST_F(Import, ALoadThatBreaksOffSaysHowFarItCame) {
  Start("jurn");
  Click(app_->Main.mnuDocIN);
  const std::pair<int, const char*> kBreaks[] = {{8, "ни одна строка НЕ загружена из 2!"},
                                                 {11, "загружены строки 1 - 1 из 2!"}};
  for (const auto& [statement, how_far] : kBreaks) {
    faults_.FailAt(statement);
    desktop_.Expect(fmt::format("Загрузка прервана: {}", how_far), BoxAnswer::kOk, BoxIcon::kCritical);
    Load(Inventory().CmdDownlFakt, "1,\"a\",1000\r\n2,\"b\",1000\r\n");
    EXPECT_NE(desktop_.LastMessage().details.find("DOCINVENT"), std::string::npos);
  }
  EXPECT_EQ(Counts().size(), 1U);
  EXPECT_EQ(Inventory().DataGrid7.Rows(), 1);
}

/// A name that would break its statement, or a line that the tables can't hold, is found before the first line goes in.
TEST_F(Import, ALoadIsTestedBeforeItsFirstLineGoesIn) {
  shop_.Sql("UPDATE TOVAR SET PRISE=2000000 WHERE COD=1");
  Start("jurn");
  const std::pair<Menu*, DocType> kDocuments[] = {{&app_->Main.mnuDocIN, DocType::kInventory},
                                                  {&app_->Main.mnuDocPERplus, DocType::kTransferIn}};
  for (const auto& [menu, type] : kDocuments) {
    Click(*menu);
    Button& load = type == DocType::kInventory ? Inventory().CmdDownlFakt : app_->StockDocuments.TransferIn.CmdDownl;
    for (const char* name : {"О'Нил", "Квас\\\\"}) {  // two for the literal: the name ends in one
      shop_.Sql(fmt::format("UPDATE TOVAR SET NAME=\"{}\" WHERE COD=2", name));
      const std::string stands = shop_.Value("SELECT NAME FROM TOVAR WHERE COD=2");
      desktop_.Expect(fmt::format("Строка 2: в наименовании товара 2 \"{}\" знак ' или \\, с ним записать нельзя!\n\r"
                                  "Из файла ничего НЕ загружено.",
                                  stands),
                      BoxAnswer::kOk, BoxIcon::kCritical);
      Load(load, "1,\"a\",1000\r\n2,\"b\",1000\r\n");
    }
    shop_.Sql("UPDATE TOVAR SET NAME='Вода''''' WHERE COD=2");  // doubled, as it stays in its quotes
    desktop_.Expect("Успешно загружено 1 строк");
    Load(load, "2,\"b\",1000\r\n");
  }
  desktop_.Expect("Строка 2: товар 1, количество или сумма слишком велики!\n\rИз файла ничего НЕ загружено.");
  Load(Inventory().CmdDownlFakt, "3,\"c\",5\r\n1,\"a\",200000000\r\n");
  EXPECT_EQ(shop_.Value("SELECT (SELECT COUNT(*) FROM DOCINVENT)+(SELECT COUNT(*) FROM DOCUMENT)"), "2");
}

TEST_F(Import, LinesOfTransfers) {
  Start("jurn");
  for (const bool in : {true, false}) {
    clock_.Set({{2026, 11, 12}, in ? 11 : 12, 0, 0});
    Click(in ? app_->Main.mnuDocPERplus : app_->Main.mnuDocPERminus);
    TransferDocument& form =
        in ? static_cast<TransferDocument&>(app_->StockDocuments.TransferIn) : app_->StockDocuments.TransferOut;
    desktop_.Expect("Успешно загружено 4 строк");
    Load(form.CmdDownl, "1,\"a\",2000\r\n2,\"b\",1500\r\n77,\"c\",1\r\n2,\"b\",1500\r\n");
    EXPECT_EQ(shop_.Column(fmt::format(
                  "SELECT CONCAT_WS('|',COD,NAME,KOL,PRISE,COST) FROM DOCUMENT WHERE TYP={} ORDER BY ID", in ? 6 : 7)),
              (Texts{"1|Чай|2000|0|0", "2|Вода|1500|33333|50000", "2|Вода|1500|33333|50000"}));
    EXPECT_EQ(form.DataGrid7.Rows(), 3);
    EXPECT_EQ(form.LblSum->Caption(), "100,00");
    // What is posted takes no more lines.
    desktop_.Expect("Провести документ?", BoxAnswer::kOk);
    Click(form.RUNButton);
    EXPECT_FALSE(form.CmdDownl.Enabled());
  }
}

TEST_F(Import, WhatOneInstallationWritesAnotherReads) {
  Start("jurn");
  Click(app_->Main.mnuDocIN);
  InWindow(Inventory().CmdExportFakt, [&] {
    desktop_.Expect("Ведомость инвентаризации пустая!", BoxAnswer::kOk, {}, "KORVINA");
    Click(app_->LineExport.CmdExport);
  });
  shop_.Sql(
      "INSERT INTO DOCINVENT (COD,NAME,OST,KOL,PRC,PRCR,DOC) VALUES (3,'Квас, \"Рус\"',0,1234,0,0,-1),"
      "(1,'Чай',7000,0,0,0,-1),(2,'Вода',0,1,0,0,-1),(1,'Чай',0,NULL,0,0,-1)");
  Do([&] { Inventory().RefreshRS7in(); });
  const std::string path = "C:\\Korvina\\Report\\Exp_12112026_090507.txt";
  clock_.Set({{2026, 11, 12}, 9, 5, 7});
  InWindow(Inventory().CmdExportFakt, [&] {
    frmExpTov& screen = app_->LineExport;
    EXPECT_EQ(screen.TextPath.Text(), path);
    // Too short a path does nothing.
    Type(screen.TextPath, "C:\\Korvina\\12345678");
    Click(screen.CmdExport);
    Type(screen.TextPath, path);
    desktop_.Expect("Выгрузка остатков в файл " + path + "\nуспешно завершена!", BoxAnswer::kOk, {}, "DESKOR");
    Click(screen.CmdExport);
    // A folder that isn't there is told, and leaves nothing behind.
    Type(screen.TextPath, "C:\\Korvina\\no\\Ex.txt");
    Fails(screen.CmdExport);
    Press(screen.TextPath, "Esc");
    EXPECT_FALSE(screen.IsVisible());
  });
  EXPECT_EQ(FileBytes(path), ToWindows1251("3,\" Квас, \"Рус\" \",1234\r\n2,\" Вода \",1\r\n"));
  Click(Inventory().CmdClear);
  InWindow(Inventory().CmdDownlFakt, [&] {
    desktop_.Expect("Успешно загружено 2 строк");
    Run(path);
  });
  EXPECT_EQ(shop_.Column("SELECT CONCAT_WS('|',COD,KOL) FROM DOCINVENT ORDER BY ID"), (Texts{"3|1234", "2|1"}));
}

}  // namespace
}  // namespace zrt
