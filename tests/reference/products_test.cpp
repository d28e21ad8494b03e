#include <fmt/format.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/errors.h"
#include "support/program_test.h"

namespace zrt {
namespace {

using test::ProgramTest;
using Texts = std::vector<std::string>;

TEST(ProductCodes, LocationAndExcise) {
  const std::tuple<const char*, const char*, int> kPlaces[] = {
      {"Бар", "", 0},           {"Бар", "Цех-2", 0},    {"Кухня-1", "", 1},       {"Кухня-1", "Цех-1", 11},
      {"Кухня-2", "Цех-3", 23}, {"Кухня-3", "", 3},     {"Кухня-3", "Цех-3", 33}, {"", "Цех-2", 2},
      {"Подвал", "", 0},        {"Кухня-2", "Цех-4", 2}};
  for (const auto& [place, workshop, code] : kPlaces)
    EXPECT_EQ(LocationCode(place, workshop), code) << place << workshop;
  EXPECT_EQ(ExciseCode(""), 0);
  EXPECT_EQ(ExciseCode("АЛКОГОЛЬ"), 1);
  EXPECT_EQ(ExciseCode("СИГАРЕТЫ"), 2);
}

/// The program on a small catalogue, the tab of the reference data in front.
class Products : public ProgramTest {
 protected:
  void Start() {
    shop_.Sql(
        "INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,N5,N7,N6,UKT) VALUES "
        "(1,1,'Чай чёрный',5000,1500,12050,'4820000000017',1,2,0,12,0,0,200,NULL,'0902'),"
        "(2,1,'Вино красное',3000,0,95000,'0',2,0,1,21,0,5000,150,NULL,' 2204 '),"
        "(7,1,'чайник',0,0,0,'4820000000024',1,0,0,0,17,NULL,NULL,0,''),"
        "(5,1,'Вода',-2500,0,4000,'',NULL,NULL,NULL,NULL,NULL,0,NULL,NULL,NULL),"
        "(5,2,'Вода',-2500,0,4000,'',0,0,0,0,0,0,0,NULL,'')");
    ProgramTest::Start("sprav");
  }

  CatalogueTab& Tab() { return app_->Main.Catalogue; }
  frmPLU& Card() { return app_->ProductCard; }
  /// Name, price, place, workshop, category, excise, tax, weighed, scales, parts, portion, barcode, classification,
  /// service.
  Texts CardValues() {
    return {Card().TextName.Text(), Card().TextPrise.Text(),
            Card().Combo1.Text(),   Card().Combo2.Text(),
            Card().Combo3.Text(),   Card().Combo4.Text(),
            Card().Combo5.Text(),   Card().CheckVes.Value() ? "+" : "-",
            Card().TextVes.Text(),  Card().TextKVP.Text(),
            Card().TextVol.Text(),  Card().TextBar.Text(),
            Card().TextUkt.Text(),  Card().CheckUsl.Value() ? "+" : "-"};
  }
  frmPLUpodb& Picker() { return app_->Picker; }
  frmPLUdial& Dialog() { return app_->PickDialog; }

  void GoTo(int row) {
    Do([&] { Tab().DataGrid1[0].UserRow(row); });
  }

  void InCard(Button& opens, const std::function<void()>& work) {
    desktop_.InModal([&](Form&) { work(); });
    Click(opens);
  }
  /// The sorts of a list, each with the codes of the products as they stand then.
  void ExpectSorts(const DataGrid& grid, const std::vector<std::pair<Button*, std::string>>& sorts) {
    for (const auto& [button, expected] : sorts) {
      Click(*button);
      std::string cods;
      for (int row = 1; row <= grid.Rows(); ++row) cods += grid.CellText(row, 0) + " ";
      EXPECT_EQ(cods, expected) << button->Name();
    }
  }
  /// The one row of the product, as the terminals read it.
  std::string Row(int cod) {
    const Texts rows = shop_.Column(fmt::format(
        "SELECT CONCAT_WS('|',COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N5,N7,N4,T1,IFNULL(N6,'NULL'),UKT) FROM "
        "TOVAR WHERE COD={}",
        cod));
    return rows.size() == 1 ? rows[0] : std::to_string(rows.size()) + " rows";
  }
};

TEST_F(Products, EachSortAsksTheDatabaseAnew) {
  Start();
  DataGrid& grid = Tab().DataGrid1[1];
  ExpectSorts(grid, {{&Tab().CmdSortCod, "1 2 5 7 "},
                     {&Tab().CmdSortPrice, "7 5 1 2 "},
                     {&Tab().CmdSortBar, "5 2 1 7 "},
                     {&Tab().CmdSortName, "2 5 1 7 "}});
  EXPECT_EQ(grid.Row(), 4) << "a list opens on its last row";
  EXPECT_EQ(grid.CellText(2, "Value"), "-2,500");
  EXPECT_EQ(grid.CellText(2, "Price"), "40,00");
  shop_.Sql("UPDATE TOVAR SET NAME='Аква' WHERE COD=5");
  Click(Tab().CmdReqr);
  EXPECT_EQ(grid.CellText(1, "Name"), "Аква");
}

TEST_F(Products, ACardShowsWhatTheBaseHolds) {
  Start();
  const std::pair<int, Texts> kShown[] = {
      {3,
       {"Чай чёрный", "120,50", "Кухня-1", "Цех-2", "2", "", "1", "-", "0", "0", "200", "4820000000017", "0902", "-"}},
      {1, {"Вино красное", "950,00", "Кухня-2", "Цех-1", "0", "АЛКОГОЛЬ", "2", "-", "0", "5", "150", "0", "2204", "-"}},
      {4, {"чайник", "0,00", "Бар", "", "0", "", "1", "+", "17", "0", "0", "4820000000024", "", "+"}},
      // What the base leaves open shows as nothing special, so that the card can be saved.
      {2, {"Вода", "40,00", "Бар", "", "0", "", "0", "-", "0", "0", "0", "", "", "-"}}};
  for (const auto& [row, values] : kShown) {
    GoTo(row);
    InCard(Tab().CmdShow, [&] {
      EXPECT_EQ(CardValues(), values);
      EXPECT_EQ(Card().Caption(), "Карточка товара: " + values[0]);
      Click(Card().CancelButton);
    });
  }
  // "Кухня-3" is stored but never read back: the card keeps the place of the product seen before.
  shop_.Sql("UPDATE TOVAR SET N2=32,N4=0,N5=7000,N7=55 WHERE COD=7");
  GoTo(1);
  InCard(Tab().CmdShow, [&] { Click(Card().CancelButton); });
  GoTo(4);
  InCard(Tab().CmdCopy, [&] {
    EXPECT_EQ(CardValues(),
              (Texts{"чайник", "0,00", "Кухня-2", "Цех-2", "0", "", "1", "-", "0", "7", "55", "", "", "+"}));
    Click(Card().CancelButton);
  });
  shop_.Sql("UPDATE TOVAR SET N2=14 WHERE COD=7");  // nor is a fourth workshop, of which there are three
  InCard(Tab().CmdCopy, [&] {
    EXPECT_EQ(Card().Combo1.Text() + Card().Combo2.Text(), "Кухня-1Цех-2");
    Click(Card().CancelButton);
  });
  InCard(Tab().CmdNew, [&] {
    EXPECT_EQ(CardValues(), (Texts{"", "0,00", "Бар", "", "0", "", "0", "-", "0", "0", "0", "", "", "-"}));
    Click(Card().CancelButton);
  });
}

TEST_F(Products, ACardThatIsRefusedCanBeMended) {
  Start();
  GoTo(3);  // Чай чёрный, code 1
  const std::pair<TextBox&, const char*> kBroken[] = {
      {Card().TextVes, "32768"}, {Card().TextVes, "семь"},        {Card().TextVol, ""},    {Card().TextVol, "99999"},
      {Card().TextVol, "1.5"},   {Card().TextName, "д'Артаньян"}, {Card().TextBar, "4'2"}, {Card().TextUkt, "'"}};
  for (const auto& [box, text] : kBroken) {
    InCard(Tab().CmdShow, [&, &field = box, typed = text] {
      const std::string good = field.Text();
      Type(Card().CheckVes, "on");
      Type(field, typed);
      desktop_.ExpectRuntimeError();
      Click(Card().OKButton);
      EXPECT_TRUE(Card().IsVisible());
      EXPECT_EQ(Row(1), "0 rows") << typed;  // gone until the card is mended
      Type(field, good);
      Type(Card().CheckVes, "off");
      Click(Card().OKButton);
    });
    EXPECT_EQ(Row(1), "1|Чай чёрный|0|0|12050|4820000000017|1|2|0|12|0|200|0|00.00.0000|NULL|0902") << text;
  }
  // A half goes to the even number; an empty name passes.
  InCard(Tab().CmdShow, [&] {
    Type(Card().TextVol, "2,5");
    Type(Card().TextName, "");
    Click(Card().OKButton);
  });
  EXPECT_EQ(Row(1), "1||0|0|12050|4820000000017|1|2|0|12|0|2|0|00.00.0000|NULL|0902");

  // Parts that the terminals' number can't hold. The "0" of a product without a barcode is shown as it stands, and then
  // it is one that another product has too.
  shop_.Sql("UPDATE TOVAR SET N5=33000 WHERE COD=2");
  shop_.Sql("UPDATE TOVAR SET BARCODE='0' WHERE COD=7");
  Click(Tab().CmdReqr);
  GoTo(2);
  InCard(Tab().CmdShow, [&] {
    desktop_.Expect("Штрихкод НЕ уникален!\n\rон принадлежит товару с кодом 7");
    Click(Card().OKButton);
    Type(Card().TextBar, "");
    EXPECT_EQ(Card().TextKVP.Text(), "33");
    desktop_.ExpectRuntimeError();
    Click(Card().OKButton);
    EXPECT_EQ(Row(2), "0 rows");
    Click(Card().CmdDelKVP);
    Click(Card().OKButton);
  });
  EXPECT_EQ(Row(2), "1|Вино красное|0|0|95000|0|2|0|1|21|0|150|0|00.00.0000|NULL|2204");
}

TEST_F(Products, TheBarShowsHowFarTheBalancesAre) {
  Start();
  for (const bool fails : {false, true}) {
    const test::Told told(Tab().ProgressBar1);
    if (fails) {
      faults_.FailAt(6);
      desktop_.ExpectRuntimeError();
    }
    Click(Tab().CmdRefrTov);
    EXPECT_EQ(told.Text, fails ? "Value=0 Visible=True Value=1 Visible=False "
                               : "Max=4 Visible=True Value=1 Value=2 Value=3 Value=4 Visible=False ");
  }
}

// The picker

class Picking : public Products {
 protected:
  void Open(int code) {
    if (!app_) {
      Start();
      shop_.Sql(
          "INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,DATEDOC,RUN,REZ) VALUES "
          "(1,1,1,2000,160500,2000,'2026-11-01 08:00:00',1,0)");
      for (const int one : {1, 2, 3, 4, 5, 6, 7, 100, 106}) {
        app_->Stock.ConnectReciever(static_cast<std::uint8_t>(one), [this, one](int cod, int kol, int price) {
          delivered_ += fmt::format("{} x{} at {} for {};", cod, kol, price, one);
        });
      }
    }
    delivered_.clear();
    Do([&] { Picker().OpenFor(static_cast<std::uint8_t>(code)); });
  }
  void PressEnter() { Press(*desktop_.Focused(), "Enter"); }
  std::string Current() { return Picker().DataGrid01.CurrentText("Наименование"); }
  /// What the fields of the choice show.
  std::string Fields() { return Picker().LbllName.Caption() + Picker().TextKol.Text() + Picker().TextPrice.Text(); }

  std::string delivered_;  ///< all that came, "product xthousandths at price for form;"
};

TEST_F(Picking, EveryDocumentAsksWhatItNeeds) {
  struct Case {
    int code;
    const char* find;
    const char* offered;
    const char* quantity;  ///< nullptr: not asked
    const char* price;     ///< nullptr: not asked, the offered one stays
    const char* delivered;
  };
  const Case kCases[] = {{1, "чай ч", "80,25", "2,5", "81", "1 x2500 at 81000 for 1;"},
                         {1, "вода", "", "1", "3,333", "5 x1000 at 3333 for 1;"},  // never received: no price offered
                         {2, "чай ч", "120,50", "0,001", "120,5", "1 x1 at 120500 for 2;"},
                         {3, "вода", "40,00", "-3", nullptr, "5 x-3000 at 40000 for 3;"},
                         {3, "чайник", "", "2", nullptr, "7 x2000 at 0 for 3;"},
                         {4, "вино", "950,00", "0", nullptr, "2 x0 at 950000 for 4;"},
                         {5, "вино", "950,00", nullptr, "1000", "2 x0 at 1000000 for 5;"},
                         {6, "вино", "950,00", "1", nullptr, "2 x1000 at 950000 for 6;"},
                         {7, "вино", "950,00", "1", nullptr, "2 x1000 at 950000 for 7;"}};
  for (const Case& one : kCases) {
    SCOPED_TRACE(fmt::format("{} {}", one.code, one.find));
    Open(one.code);
    ASSERT_EQ(desktop_.Focused(), &Picker().TextFind);
    Type(Picker().TextFind, one.find);
    PressEnter();
    EXPECT_EQ(Picker().TextPrice.Text(), one.offered);
    EXPECT_EQ(desktop_.Focused(), one.quantity ? &Picker().TextKol : &Picker().TextPrice);
    if (one.quantity) {
      PressEnter();  // an empty quantity is no number: the keyboard stays
      EXPECT_EQ(desktop_.Focused(), &Picker().TextKol);
      Type(Picker().TextKol, one.quantity);
      PressEnter();
    }
    EXPECT_EQ(desktop_.Focused(), one.price ? static_cast<Control*>(&Picker().TextPrice) : &Picker().OKButton);
    if (one.price) Type(Picker().TextPrice, one.price);
    PressEnter();
    EXPECT_EQ(delivered_, one.delivered);
    EXPECT_TRUE(Picker().IsVisible()) << "it stays for the next product";
    EXPECT_EQ(Fields(), "");
    EXPECT_EQ(desktop_.Focused(), &Picker().TextFind);
  }
  for (const int filter : {100, 106}) {
    Open(filter);
    Type(Picker().TextFind, "вино");
    PressEnter();
    EXPECT_EQ(desktop_.Focused(), &Picker().OKButton);
    PressEnter();
    EXPECT_EQ(delivered_, fmt::format("2 x0 at 0 for {};", filter));
    EXPECT_FALSE(Picker().IsVisible());
  }
}

TEST_F(Picking, AScannedBarcodeIsAskedForLikeAChosenProduct) {
  Open(2);
  const auto scan = [&](const std::string& code) {
    desktop_.ExpectInput("отсканируйте Штрихкод", code);
    Click(Picker().CmnFindBar);
  };
  scan("04820000000017");  // as a number: the scanner's leading zero doesn't matter
  EXPECT_EQ(Picker().LbllName.Caption(), "4820000000017  Чай чёрный  1");
  EXPECT_EQ(Picker().PickBar, "4820000000017");
  Type(Picker().TextKol, "2");
  PressEnter();
  PressEnter();
  EXPECT_EQ(delivered_, "1 x2000 at 120500 for 2;");
  EXPECT_EQ(desktop_.Focused(), &Picker().CmnFindBar) << "ready for the next scan";

  // The grid's way to a product without a barcode shows none, although the base holds "0".
  Type(Picker().TextFind, "вино");
  EXPECT_EQ(desktop_.Focused(), &Picker().TextFind);
  Press(Picker().DataGrid01, "Enter");
  EXPECT_EQ(Picker().LbllName.Caption(), "  Вино красное  2");
  shop_.Sql("UPDATE TOVAR SET PRISE=NULL WHERE COD=7");
  scan("4820000000024");
  EXPECT_EQ(Picker().TextPrice.Text(), "");

  // The same way for the other documents: the purchase price, a price alone, a filter.
  const std::tuple<std::uint8_t, const char*, Control*> kOthers[] = {
      {1, "80,25", &Picker().TextKol}, {5, "120,50", &Picker().TextPrice}, {100, "", &Picker().OKButton}};
  for (const auto& [code, price, focus] : kOthers) {
    Picker().FormCode = code;
    Picker().PickPrice = 0;
    scan("4820000000017");
    EXPECT_EQ(Picker().TextPrice.Text(), price) << int{code};
    EXPECT_EQ(desktop_.Focused(), focus) << int{code};
  }
  // OK asks for what is missing.
  delivered_.clear();
  Picker().FormCode = 2;
  scan("4820000000017");
  Click(Picker().OKButton);
  EXPECT_EQ(desktop_.Focused(), &Picker().TextKol);
  Type(Picker().TextKol, "0,0015");  // a tie, whatever its binary form
  Type(Picker().TextPrice, "дорого");
  Click(Picker().OKButton);
  EXPECT_EQ(desktop_.Focused(), &Picker().TextPrice);
  Type(Picker().TextPrice, "100000,5");
  Click(Picker().OKButton);
  scan("4820000000017");
  Type(Picker().TextKol, std::string(60, '9'));
  desktop_.ExpectRuntimeError();
  Click(Picker().OKButton);

  scan("");
  desktop_.ExpectInput("отсканируйте Штрихкод", "111");
  desktop_.Expect("НЕТ ТАКОГО ШТРИХКОДА В БАЗЕ ДАННЫХ!", BoxAnswer::kOk, BoxIcon::kExclamation);
  Click(Picker().CmnFindBar);
  desktop_.ExpectRuntimeError();
  scan("ABC");
  EXPECT_EQ(delivered_, "1 x2 at 100000500 for 2;");
}

TEST_F(Picking, SortsStayOnTheirProduct) {
  Open(2);
  DataGrid& grid = Picker().DataGrid01;
  Do([&] { grid.UserRow(3); });
  ExpectSorts(grid, {{&Picker().CmdCod, "1 2 5 7 "},
                     {&Picker().CmdBar, "5 2 1 7 "},
                     {&Picker().CmdPrice, "7 5 1 2 "},
                     {&Picker().CmdKol, "5 7 2 1 "},
                     {&Picker().CmdName, "2 5 1 7 "}});
  EXPECT_EQ(Current(), "Чай чёрный");
  Click(Picker().CmdVid);
  EXPECT_EQ(grid.CellText(4, 0), "2");
  EXPECT_EQ(Current(), "Чай чёрный");
  EXPECT_EQ(grid.CurrentText("Цена"), "120,50");
  EXPECT_EQ(grid.CurrentText("Остат"), "3,500");
  // Coming back from another window the list is in the order of names again.
  Do([&] { desktop_.Activated(app_->Main); });
  Do([&] { desktop_.Activated(Picker()); });
  EXPECT_EQ(grid.CellText(1, 0), "2");
  EXPECT_EQ(Current(), "Чай чёрный");
  Press(Picker().TextFind, "Up");
  EXPECT_EQ(Current(), "Вода");
  Press(Picker().TextFind, "Down");
  Type(Picker().TextFind, "x");
  Click(Picker().CmdClearFind);
  EXPECT_EQ(Picker().TextFind.Text(), "");
  // The product is gone when the list is read again: the cursor stays near where it was.
  Type(Picker().TextFind, "чай ч");
  shop_.Sql("DELETE FROM TOVAR WHERE COD=1");
  Click(Picker().CmdName);
  EXPECT_EQ(grid.Rows(), 3);
  EXPECT_EQ(grid.Row(), 3);
}

TEST_F(Picking, TheCardAndTheDeletionServeThePickerToo) {
  Open(1);
  const auto save = [&](const char* name) {
    Type(Card().TextName, name);
    Type(Card().TextPrise, "300");
    Click(Card().OKButton);
  };
  InCard(Picker().CmdNewPLU, [&] { save("Мёд"); });
  EXPECT_EQ(Current(), "Мёд");
  EXPECT_EQ(Picker().TextFind.Text(), "");
  EXPECT_EQ(Tab().DataGrid1[0].Rows(), 5) << "the catalogue behind has it too";
  InCard(Picker().CmdCopyPLU, [&] { save("Яблоко"); });
  EXPECT_EQ(Current(), "Яблоко");
  InCard(Picker().CmdShowPLU, [&] {
    EXPECT_EQ(Card().LabelCod.Caption(), "9");
    Press(Card().TextPrise, "Esc");
  });
  desktop_.Expect("Удалить товар 'Яблоко', код 9?", BoxAnswer::kOk, BoxIcon::kQuestion);
  Click(Picker().CmdDelPLU);
  EXPECT_EQ(Picker().DataGrid01.Rows(), 5);
  EXPECT_EQ(Tab().DataGrid1[0].Rows(), 5);

  // Changes of mind: Esc in the fields starts over, Esc in the list closes; leaving the window empties the fields.
  for (TextBox* field : {&Picker().TextKol, &Picker().TextPrice}) {
    Press(Picker().DataGrid01, "Enter");
    Type(Picker().TextKol, "5");
    Press(*field, "Esc");
    EXPECT_EQ(Fields(), "");
    EXPECT_TRUE(Picker().IsVisible());
  }
  Do([&] { Picker().DataGrid01.UserDblClick(); });
  EXPECT_NE(Fields(), "");
  Do([&] { desktop_.Activated(app_->Main); });
  EXPECT_EQ(Fields(), "");
  Do([&] { desktop_.Activated(Picker()); });
  Press(Picker().DataGrid01, "Esc");
  EXPECT_FALSE(Picker().IsVisible());
  EXPECT_EQ(delivered_, "");
}

TEST_F(Picking, TheDialogAsksTheSameOfAKnownProduct) {
  Open(3);
  TextBox* kol = &Dialog().TextKol;
  TextBox* price = &Dialog().TextPrice;
  struct Case {
    int code;
    std::vector<std::pair<TextBox*, const char*>> typed;  ///< field and text, each ended by Enter
    const char* delivered;
  };
  const Case kCases[] = {{1, {{kol, "2"}, {price, "10,25"}}, "1 x2000 at 10250 for 1;"},
                         {2, {{kol, "1,5"}, {price, "0"}}, "1 x1500 at 0 for 2;"},
                         {3, {{kol, "4"}}, "1 x4000 at 1200 for 3;"},
                         {5, {{price, "7"}}, "1 x0 at 7000 for 5;"},
                         {7, {{kol, "-1"}}, "1 x-1000 at 1200 for 7;"}};
  for (const Case& one : kCases) {
    SCOPED_TRACE(one.code);
    delivered_.clear();
    desktop_.InModal([&](Form&) {
      EXPECT_EQ(Dialog().LbllName.Caption(), "Чай  1  ");
      EXPECT_EQ(kol->Text() + " " + price->Text(), "1,5 1,20");
      for (const auto& [field, text] : one.typed) {
        EXPECT_EQ(desktop_.Focused(), field);
        Type(*field, "1.5");
        Press(*field, "Enter");
        EXPECT_EQ(desktop_.Focused(), field) << "no number: the keyboard stays";
        Type(*field, text);
        Press(*field, "Enter");
      }
      if (Dialog().IsVisible()) PressEnter();
    });
    Do([&] { Dialog().AskFor({1, "Чай", 1500, 1200}, static_cast<std::uint8_t>(one.code)); });
    EXPECT_EQ(delivered_, one.delivered);
    EXPECT_EQ(kol->Text() + price->Text(), "");
  }
  desktop_.InModal([&](Form&) {
    EXPECT_EQ(kol->Text() + price->Text(), "");
    Press(*kol, "Esc");
  });
  Do([&] { Dialog().AskFor({1, "Чай", 0, 0}, 7); });
  EXPECT_EQ(delivered_, "1 x-1000 at 1200 for 7;");
}

}  // namespace
}  // namespace zrt
