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
  struct Case {
    const char* place;
    const char* workshop;
    int code;
  };
  const Case kCases[] = {{"Бар", "", 0},           {"Бар", "Цех-2", 0},      {"Кухня-1", "", 1},
                         {"Кухня-1", "Цех-1", 11}, {"Кухня-2", "Цех-3", 23}, {"Кухня-3", "", 3},
                         {"Кухня-3", "Цех-3", 33}, {"", "Цех-2", 2},         {"Подвал", "", 0},
                         {"Кухня-2", "Цех-4", 2}};
  for (const Case& one : kCases)
    EXPECT_EQ(LocationCode(one.place, one.workshop), one.code) << one.place << one.workshop;
  EXPECT_EQ(ExciseCode(""), 0);
  EXPECT_EQ(ExciseCode("АЛКОГОЛЬ"), 1);
  EXPECT_EQ(ExciseCode("СИГАРЕТЫ"), 2);
}

/// The program on a small catalogue, the tab of the reference data in front.
class Products : public ProgramTest {
 protected:
  void Start(const std::string& rows = kFew) {
    if (!rows.empty()) {
      shop_.Sql("INSERT INTO TOVAR (COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,N5,N7,N6,UKT) VALUES " + rows);
    }
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

  void GoTo(DataGrid& grid, int row) {
    desktop_.UserAction([&] { grid.UserRow(row); });
  }

  std::string Current() { return Tab().DataGrid1[0].CurrentText("Name"); }
  Texts Names(DataGrid& grid, int column = 1) {
    Texts names;
    for (int row = 1; row <= grid.Rows(); ++row) names.push_back(grid.CellText(row, column));
    return names;
  }
  /// The one row of the product, as the terminals read it.
  std::string Row(int cod) {
    const Texts rows = shop_.Column(fmt::format(
        "SELECT CONCAT_WS('|',COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N5,N7,N4,T1,IFNULL(N6,'NULL'),UKT) FROM "
        "TOVAR WHERE COD={}",
        cod));
    return rows.size() == 1 ? rows[0] : std::to_string(rows.size()) + " rows";
  }

  static constexpr const char* kFew =
      "(1,1,'Чай чёрный',5000,1500,12050,'4820000000017',1,2,0,12,0,0,200,NULL,'0902'),"
      "(2,1,'Вино красное',3000,0,95000,'0',2,0,1,21,0,5000,150,NULL,' 2204 '),"
      "(7,1,'чайник',0,0,0,'4820000000024',1,0,0,0,17,NULL,NULL,0,''),"
      "(5,1,'Вода',-2500,0,4000,'',NULL,NULL,NULL,NULL,NULL,0,NULL,NULL,NULL),"
      "(5,2,'Вода',-2500,0,4000,'',0,0,0,0,0,0,0,NULL,'')";
};

TEST_F(Products, EachSortAsksTheDatabaseAnew) {
  Start();
  struct Case {
    Button& button;
    const char* tail;
    Texts names;
  };
  const Case kCases[] = {
      {Tab().CmdSortCod, " GROUP BY COD ORDER BY COD", {"Чай чёрный", "Вино красное", "Вода", "чайник"}},
      {Tab().CmdSortPrice, " GROUP BY COD ORDER BY PRISE", {"чайник", "Вода", "Чай чёрный", "Вино красное"}},
      {Tab().CmdSortBar, " GROUP BY COD ORDER BY BARCODE", {"Вода", "Вино красное", "Чай чёрный", "чайник"}},
      {Tab().CmdSortName, " GROUP BY COD ORDER BY NAME", {"Вино красное", "Вода", "Чай чёрный", "чайник"}}};
  for (const Case& sort : kCases) {
    faults_.Forget();
    Click(sort.button);
    ASSERT_EQ(faults_.Statements().size(), 1U);
    EXPECT_TRUE(faults_.Statements()[0].ends_with(std::string("UKT As 'UKTZED' FROM TOVAR") + sort.tail));
    for (DataGrid& grid : Tab().DataGrid1) EXPECT_EQ(Names(grid), sort.names) << sort.tail;
    EXPECT_EQ(Tab().DataGrid1[0].Row(), 4) << "a list opens on its last row";
  }
  EXPECT_EQ(Tab().DataGrid1[1].CellText(2, "Value"), "-2,500");
  EXPECT_EQ(Tab().DataGrid1[1].CellText(2, "Price"), "40,00");
  const auto width = [&](std::size_t column) { return Tab().DataGrid1[0].Columns()[column].width; };
  EXPECT_EQ(width(11), 1300);
  EXPECT_EQ(width(12), 0);
  Click(Tab().CheckUkt);
  EXPECT_EQ(width(11), 0);
  EXPECT_EQ(width(12), 1300);
  // A new reading keeps the layout.
  shop_.Sql("UPDATE TOVAR SET NAME='Аква' WHERE COD=5");
  Click(Tab().CmdReqr);
  EXPECT_EQ(Names(Tab().DataGrid1[0])[0], "Аква");
  EXPECT_EQ(width(12), 1300);
}

TEST_F(Products, TheSearchFollowsTheTyping) {
  Start();
  TextBox& find = Tab().TextFind[0];
  DataGrid& grid = Tab().DataGrid1[0];
  GoTo(grid, 2);
  Type(find, "ЧАЙ");
  EXPECT_EQ(Current(), "Чай чёрный") << "case doesn't matter";
  EXPECT_EQ(desktop_.Focused(), &find);
  Type(find, "ЧАЙН");
  EXPECT_EQ(Current(), "чайник");
  GoTo(grid, 2);
  for (const char* nothing : {"ник", "Чай зелёный", "%", "чай_"}) {
    Type(find, nothing);
    EXPECT_EQ(Current(), "Вода") << nothing;
  }
  Type(find, "");
  EXPECT_EQ(Current(), "Вода");

  // A quote breaks the search, which is reported; the list stays where it was.
  desktop_.ExpectRuntimeError();
  Type(find, "Чай'");
  EXPECT_EQ(Current(), "Вода");

  Press(find, "Down");
  EXPECT_EQ(Current(), "Чай чёрный");
  EXPECT_EQ(find.Text(), "");
  Press(find, "Up");
  Press(find, "Up");
  Press(find, "Up");
  EXPECT_EQ(Current(), "Вино красное") << "the first row is the end of it";

  // Typing in the list is typing in its search field.
  for (const char* letter : {"в", "о", "д"}) Press(grid, letter);
  EXPECT_EQ(find.Text(), "вод");
  EXPECT_EQ(Current(), "Вода");
  EXPECT_EQ(Tab().TextFind[1].Text(), "");
  Press(grid, "я");
  EXPECT_EQ(Current(), "Вода");
  EXPECT_EQ(desktop_.Focused(), &find);

  // The other list has a field of its own and hands its product to the panels.
  Texts chosen;
  Tab().ChooseForPanel = [&] { chosen.push_back(Tab().DataGrid1[1].CurrentText("Name")); };
  desktop_.UserAction([this] { app_->Main.TabStrip1.UserChoose("sensor"); });
  Type(Tab().TextFind[1], "чайн");
  Press(Tab().TextFind[1], "Enter");
  Press(Tab().DataGrid1[1], "Enter");
  desktop_.UserAction([this] { Tab().DataGrid1[1].UserDblClick(); });
  EXPECT_EQ(chosen, (Texts{"чайник", "чайник", "чайник"}));
}

TEST_F(Products, AnEmptyCatalogueAnswersNothing) {
  Start("");
  for (Button* button : {&Tab().CmdCopy, &Tab().CmdShow, &Tab().CmdDelPLU}) Click(*button);
  Type(Tab().TextFind[0], "чай");
  Press(Tab().TextFind[0], "Down");
  Press(Tab().DataGrid1[0], "Enter");
  desktop_.UserAction([this] { Tab().DataGrid1[0].UserDblClick(); });
  EXPECT_TRUE(faults_.Statements().empty());

  desktop_.InModal([&](Form&) {
    EXPECT_EQ(Card().LabelCod.Caption(), "1");
    Click(Card().CancelButton);
  });
  Click(Tab().CmdNew);
  desktop_.CheckAllCame();
}

TEST_F(Products, RestrictedListLacksProductsWithoutPrice) {
  shop_.Sql("UPDATE CONST SET N3=2 WHERE COD=7");
  Start();
  EXPECT_EQ(Names(Tab().DataGrid1[0]), (Texts{"Вино красное", "Вода", "Чай чёрный"}));
  Click(Tab().CmdSortCod);
  EXPECT_EQ(Tab().DataGrid1[0].Rows(), 3);
  Press(Tab().DataGrid1[0], "Enter");  // the card stays shut
  Press(Tab().TextFind[0], "Enter");
  desktop_.UserAction([this] { Tab().DataGrid1[0].UserDblClick(); });
}

TEST_F(Products, DeletingOneAndDeletingAll) {
  Start();
  shop_.Sql("UPDATE HOTKEYS SET CODE=5 WHERE ID=101");
  shop_.Sql("INSERT INTO REGISTR (DOC,COD,KOL,RUN) VALUES (1,5,1000,1)");
  GoTo(Tab().DataGrid1[0], 2);
  desktop_.Expect("Удалить товар 'Вода', код 5?", BoxAnswer::kCancel, BoxIcon::kQuestion);
  Click(Tab().CmdDelPLU);
  EXPECT_EQ(Tab().DataGrid1[0].Rows(), 4);
  desktop_.Expect("Удалить товар 'Вода', код 5?", BoxAnswer::kOk);
  Click(Tab().CmdDelPLU);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM TOVAR"), "3") << "both rows of the code go";
  EXPECT_EQ(Names(Tab().DataGrid1[1]), (Texts{"Вино красное", "Чай чёрный", "чайник"}));
  EXPECT_EQ(shop_.Value("SELECT CODE FROM HOTKEYS WHERE ID=101"), "5");
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM REGISTR WHERE COD=5"), "1");

  const std::string prompt = "Для полной очистки справочника меню введите пароль администратора:";
  for (const char* wrong : {"", "357217", " 357218"}) {
    desktop_.ExpectInput(prompt, wrong);
    Click(Tab().CmdClrAllPLU);
  }
  desktop_.ExpectInput(prompt, "357218");
  desktop_.Expect("Подтвердите удаление ВСЕХ товаров!", BoxAnswer::kCancel, BoxIcon::kQuestion);
  Click(Tab().CmdClrAllPLU);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM TOVAR"), "3");
  desktop_.ExpectInput(prompt, "357218");
  desktop_.Expect("Подтвердите удаление ВСЕХ товаров!", BoxAnswer::kOk);
  Click(Tab().CmdClrAllPLU);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM TOVAR"), "0");
  EXPECT_EQ(Tab().DataGrid1[0].Rows(), 0);
}

TEST_F(Products, ACardIsSavedInItsOrder) {
  Start();
  desktop_.InModal([&](Form&) {
    EXPECT_EQ(Card().Caption(), "Карточка товара: - НОВЫЙ");
    EXPECT_EQ(Card().LabelCod.Caption(), "8") << "gaps stay";
    EXPECT_EQ(Card().TextPrise.Text(), "0,00");
    EXPECT_EQ(desktop_.Focused(), &Card().TextName);
    Type(Card().TextName, "  Кофе \"Арабика\" № 5  ");
    Type(Card().TextPrise, "1234,565");
    Type(Card().Combo1, "Кухня-2");
    Type(Card().Combo2, "Цех-3");
    Type(Card().Combo3, "9");
    Type(Card().Combo4, "СИГАРЕТЫ");
    Type(Card().Combo5, "6");
    Type(Card().CheckVes, "on");
    EXPECT_EQ(Card().TextVes.Text(), "1");
    Type(Card().TextVes, " 32767 ");
    Type(Card().TextVol, "0250");
    Type(Card().TextBar, " 4820000000031 ");
    Type(Card().TextUkt, " 0901 ");
    Type(Card().CheckUsl, "on");
    Type(Card().TextKVP, "5");
    EXPECT_EQ(Card().TextKVP.Text(), "0") << "the number of parts is chosen, not typed";
    Click(Card().CmdKVP);
    EXPECT_EQ(desktop_.Focused(), &Card().ListKVP);
    Type(Card().ListKVP, "12");
    Press(Card().ListKVP, "Enter");
    EXPECT_EQ(Card().TextKVP.Text(), "12");
    EXPECT_FALSE(Card().ListKVP.Visible());
    faults_.Forget();
    Press(Card().TextPrise, "Enter");
  });
  Click(Tab().CmdNew);
  EXPECT_EQ(Row(8), "1|  Кофе \"Арабика\" № 5  |0|0|123457|4820000000031|6|9|2|23|12000|250|32767|00.00.0000|0|0901");
  const Texts& sent = faults_.Statements();
  ASSERT_GE(sent.size(), 4U);
  EXPECT_EQ(sent[0], "DELETE FROM TOVAR WHERE COD=8");
  EXPECT_EQ(sent[1], "SELECT COD FROM TOVAR WHERE BARCODE='4820000000031'");
  EXPECT_EQ(
      sent[2],
      "INSERT INTO TOVAR (ID,COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N5,N7,N4,T1,N6,UKT) VALUES (0,8,1,'  "
      "Кофе \"Арабика\" № 5  ',0,0,123457,'4820000000031',6,9,2,23,12000,250,32767,'00.00.0000',0,'0901')");
  EXPECT_TRUE(sent[3].ends_with("ORDER BY NAME"));
  EXPECT_EQ(Tab().DataGrid1[0].CurrentText("Cod"), "8") << "the list stands on the saved product";
  EXPECT_EQ(Tab().TextFind[0].Text(), "");
  // The next new one has nothing of it.
  desktop_.InModal([&](Form&) {
    EXPECT_EQ(CardValues(), (Texts{"", "0,00", "Бар", "", "0", "", "0", "-", "0", "0", "0", "", "", "-"}));
    Press(Card().TextName, "Esc");
  });
  Click(Tab().CmdNew);
}

TEST_F(Products, ACardShowsWhatTheBaseHolds) {
  Start();
  struct Shown {
    int row;
    Texts values;
  };
  const Shown kShown[] = {
      {3,
       {"Чай чёрный", "120,50", "Кухня-1", "Цех-2", "2", "", "1", "-", "0", "0", "200", "4820000000017", "0902", "-"}},
      {1, {"Вино красное", "950,00", "Кухня-2", "Цех-1", "0", "АЛКОГОЛЬ", "2", "-", "0", "5", "150", "0", "2204", "-"}},
      {4, {"чайник", "0,00", "Бар", "", "0", "", "1", "+", "17", "0", "0", "4820000000024", "", "+"}},
      // What the base leaves open shows as nothing special, so that the card can be saved.
      {2, {"Вода", "40,00", "Бар", "", "0", "", "0", "-", "0", "0", "0", "", "", "-"}}};
  for (const Shown& shown : kShown) {
    GoTo(Tab().DataGrid1[0], shown.row);
    desktop_.InModal([&](Form&) {
      EXPECT_EQ(CardValues(), shown.values);
      EXPECT_EQ(Card().Caption(), "Карточка товара: " + shown.values[0]);
      EXPECT_EQ(desktop_.Focused(), &Card().TextPrise);
      EXPECT_EQ(Card().TextPrise.SelLength(), static_cast<int>(shown.values[1].size()));
      Press(Card().TextName, "Esc");
    });
    Press(Tab().DataGrid1[0], "Enter");
  }

  // "Кухня-3" is stored but never read back: the card keeps the place of the product seen before.
  shop_.Sql("UPDATE TOVAR SET N2=32,N4=0,N5=7000,N7=55 WHERE COD=7");
  GoTo(Tab().DataGrid1[0], 1);
  desktop_.InModal([&](Form&) { Click(Card().CancelButton); });
  Click(Tab().CmdShow);
  GoTo(Tab().DataGrid1[0], 4);
  desktop_.InModal([&](Form&) {
    EXPECT_EQ(Card().LabelCod.Caption(), "8");
    EXPECT_EQ(Card().Caption(), "Карточка товара: - НОВЫЙ");
    EXPECT_EQ(CardValues(),
              (Texts{"чайник", "0,00", "Кухня-2", "Цех-2", "0", "", "1", "-", "0", "7", "55", "", "", "+"}))
        << "a copy takes all but the barcode";
    EXPECT_EQ(desktop_.Focused(), &Card().TextName);
    Type(Card().TextPrise, "-1,50");
    Click(Card().OKButton);
  });
  Click(Tab().CmdCopy);
  EXPECT_EQ(Row(8), "1|чайник|0|0|-150|0|1|0|0|22|7000|55|0|00.00.0000|0|") << "a negative price passes";
}

TEST_F(Products, ListsOfTheCard) {
  Start();
  for (int opening = 1; opening <= 2; ++opening) {  // closing the window and opening it again doubles nothing
    desktop_.InModal([&](Form&) {
      EXPECT_EQ(Card().Combo1.Items(), (Texts{"Бар", "Кухня-1", "Кухня-2", "Кухня-3"}));
      EXPECT_EQ(Card().Combo2.Items(), (Texts{"", "Цех-1", "Цех-2", "Цех-3"}));
      EXPECT_EQ(Card().Combo3.Items(), (Texts{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}));
      EXPECT_EQ(Card().Combo4.Items(), (Texts{"", "АЛКОГОЛЬ", "СИГАРЕТЫ"}));
      EXPECT_EQ(Card().Combo5.Items(), (Texts{"0", "1", "2", "3", "4", "5", "6"}));
      EXPECT_EQ(Card().ListKVP.Items(), (Texts{"2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12"}));
      Click(Card().CmdKVP);
      Type(Card().ListKVP, "7");
      desktop_.UserAction([this] { Card().ListKVP.UserDblClick(); });
      EXPECT_EQ(Card().TextKVP.Text(), "7");
      Click(Card().CmdKVP);
      Press(Card().ListKVP, "Esc");
      EXPECT_EQ(Card().TextKVP.Text(), "0");
      EXPECT_FALSE(Card().ListKVP.Visible());
      Type(Card().TextVes, "55");
      Type(Card().CheckVes, "on");
      EXPECT_EQ(Card().TextVes.Text(), "55") << "a code that is there already stays";
      desktop_.UserAction([this] { Card().Close(); });
    });
    Click(Tab().CmdNew);
  }
}

TEST_F(Products, ANameThatTheSearchCantTakeIsSavedAllTheSame) {
  Start();
  desktop_.InModal([&](Form&) {
    Type(Card().TextName, "О''Брайен");
    Type(Card().TextPrise, "1");
    desktop_.ExpectRuntimeError();
    Click(Card().OKButton);
    Click(Card().CancelButton);
  });
  Click(Tab().CmdNew);
  EXPECT_EQ(shop_.Value("SELECT NAME FROM TOVAR WHERE COD=8"), "О'Брайен");
  EXPECT_EQ(Tab().TextFind[0].Text(), "");
}

TEST_F(Products, WhatACardRefuses) {
  Start();
  GoTo(Tab().DataGrid1[0], 3);  // Чай чёрный, code 1
  const auto open = [&](const std::function<void()>& work) {
    desktop_.InModal([work](Form&) { work(); });
    Click(Tab().CmdShow);
    desktop_.CheckAllCame();
  };
  const std::string before = Row(1);
  open([&] {
    for (const char* price : {"", "1.5", "12a", "сто"}) {
      Type(Card().TextPrise, price);
      desktop_.Expect("Введите числовое значение!", BoxAnswer::kOk, BoxIcon::kCritical);
      Click(Card().OKButton);
      EXPECT_EQ(desktop_.Focused(), &Card().TextPrise);
    }
    for (const char* price : {"0", "0,004", "-0,004"}) {
      Type(Card().TextPrise, price);
      desktop_.Expect("Розничная цена не может быть равной нулю!\n\rВведите розничную цену!", BoxAnswer::kOk,
                      BoxIcon::kCritical);
      Press(Card().TextName, "Enter");
    }
    Type(Card().TextPrise, "99999999");  // hundredths beyond 32 bits
    desktop_.ExpectRuntimeError();
    Click(Card().OKButton);
    EXPECT_EQ(Row(1), before) << "nothing has been written so far";

    // Another product's barcode: from here on the old row is gone until the card is mended.
    Type(Card().TextPrise, "130");
    Type(Card().TextBar, "4820000000024");
    desktop_.Expect("Штрихкод НЕ уникален!\n\rон принадлежит товару с кодом 7", BoxAnswer::kOk, BoxIcon::kCritical);
    Click(Card().OKButton);
    EXPECT_EQ(Row(1), "0 rows");
    EXPECT_EQ(desktop_.Focused(), &Card().TextBar);
    EXPECT_EQ(Card().TextBar.SelLength(), 13);
    Type(Card().TextBar, "4820000000017");  // its own: not another's
    Click(Card().OKButton);
  });
  EXPECT_EQ(Row(1), "1|Чай чёрный|0|0|13000|4820000000017|1|2|0|12|0|200|0|00.00.0000|NULL|0902");

  struct Broken {
    TextBox& box;
    const char* text;
  };
  const Broken kBroken[] = {{Card().TextVes, "32768"}, {Card().TextVes, "семь"}, {Card().TextVol, ""},
                            {Card().TextVol, "99999"}, {Card().TextVol, "1.5"},  {Card().TextName, "д'Артаньян"},
                            {Card().TextBar, "48'2"},  {Card().TextUkt, "'"}};
  for (const Broken& broken : kBroken) {
    open([&] {
      const std::string good = broken.box.Text();
      Type(Card().CheckVes, "on");
      Type(broken.box, broken.text);
      desktop_.ExpectRuntimeError();
      Click(Card().OKButton);
      EXPECT_TRUE(Card().IsVisible());
      EXPECT_EQ(Row(1), "0 rows") << broken.text;
      Type(broken.box, good);
      Type(Card().CheckVes, "off");
      EXPECT_EQ(Card().TextVes.Text(), "0");
      Click(Card().OKButton);
    });
    EXPECT_EQ(Row(1), "1|Чай чёрный|0|0|13000|4820000000017|1|2|0|12|0|200|0|00.00.0000|NULL|0902") << broken.text;
  }

  // "1,5" is a number and rounds to the even one; a blank barcode isn't checked; an empty name passes.
  open([&] {
    Type(Card().TextVol, "2,5");
    Type(Card().TextBar, "  ");
    Type(Card().TextName, "");
    Click(Card().OKButton);
  });
  EXPECT_EQ(Row(1), "1||0|0|13000|0|1|2|0|12|0|2|0|00.00.0000|NULL|0902");

  // Parts that the terminals' number can't hold.
  shop_.Sql("UPDATE TOVAR SET N5=33000 WHERE COD=2");
  Click(Tab().CmdReqr);
  GoTo(Tab().DataGrid1[0], 2);
  open([&] {
    // The "0" of a product without a barcode is shown as it stands, and then it is one that another product has too.
    desktop_.Expect("Штрихкод НЕ уникален!\n\rон принадлежит товару с кодом 1");
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

  // Deleted from another work place meanwhile: no card opens.
  shop_.Sql("DELETE FROM TOVAR WHERE COD=2");
  Click(Tab().CmdShow);
  Click(Tab().CmdCopy);
}

// The picker

class Picking : public Products {
 protected:
  struct Delivery {
    int cod;
    int kol;
    int price;
    int code;
    friend bool operator==(const Delivery&, const Delivery&) = default;
    friend void PrintTo(const Delivery& d, std::ostream* out) {
      *out << d.cod << " x" << d.kol << " at " << d.price << " for " << d.code;
    }
  };

  void Open(std::uint8_t code) {
    if (!app_) Start();
    for (const int one : {1, 2, 3, 4, 5, 6, 7, 100, 106}) {
      app_->Stock.ConnectReciever(static_cast<std::uint8_t>(one), [this, one](int cod, int kol, int price) {
        delivered_.push_back({cod, kol, price, one});
      });
    }
    desktop_.UserAction([&] { Picker().OpenFor(code); });
  }

  /// Enter until something is delivered, as an operator with a keyboard only does.
  void Enter(int times) {
    for (int i = 0; i < times; ++i) Press(*desktop_.Focused(), "Enter");
  }

  std::vector<Delivery> delivered_;
};

TEST_F(Picking, EveryDocumentAsksWhatItNeeds) {
  shop_.Sql(
      "INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,DATEDOC,RUN,REZ) VALUES "
      "(1,1,1,2000,160500,2000,'2026-11-01 08:00:00',1,0)");
  struct Case {
    int code;
    const char* find;
    const char* offered;
    const char* quantity;  ///< nullptr: not asked
    const char* price;     ///< nullptr: not asked, the offered one stays
    Delivery delivered;
  };
  const Case kCases[] = {{1, "чай ч", "80,25", "2,5", "81", {1, 2500, 81000, 1}},
                         {1, "вода", "", "1", "3,333", {5, 1000, 3333, 1}},  // never received: no price offered
                         {2, "чай ч", "120,50", "0,001", "120,5", {1, 1, 120500, 2}},
                         {3, "вода", "40,00", "-3", nullptr, {5, -3000, 40000, 3}},
                         {3, "чайник", "", "2", nullptr, {7, 2000, 0, 3}},
                         {4, "вино", "950,00", "0", nullptr, {2, 0, 950000, 4}},
                         {5, "вино", "950,00", nullptr, "1000", {2, 0, 1000000, 5}},
                         {6, "вино", "950,00", "1", nullptr, {2, 1000, 950000, 6}},
                         {7, "вино", "950,00", "1", nullptr, {2, 1000, 950000, 7}}};
  for (const Case& one : kCases) {
    SCOPED_TRACE(fmt::format("{} {}", one.code, one.find));
    delivered_.clear();
    Open(static_cast<std::uint8_t>(one.code));
    ASSERT_EQ(desktop_.Focused(), &Picker().TextFind);
    Type(Picker().TextFind, one.find);
    Enter(1);
    EXPECT_EQ(Picker().TextPrice.Text(), one.offered);
    EXPECT_EQ(desktop_.Focused(), one.quantity ? &Picker().TextKol : &Picker().TextPrice);
    if (one.quantity) {
      Enter(1);  // an empty quantity is no number: the keyboard stays
      EXPECT_EQ(desktop_.Focused(), &Picker().TextKol);
      Type(Picker().TextKol, one.quantity);
      Enter(1);
    }
    EXPECT_EQ(desktop_.Focused(), one.price ? static_cast<Control*>(&Picker().TextPrice) : &Picker().OKButton);
    if (one.price) Type(Picker().TextPrice, one.price);
    Enter(1);
    EXPECT_EQ(delivered_, std::vector<Delivery>{one.delivered});
    EXPECT_TRUE(Picker().IsVisible()) << "it stays for the next product";
    EXPECT_EQ(Picker().LbllName.Caption() + Picker().TextKol.Text() + Picker().TextPrice.Text(), "");
    EXPECT_EQ(desktop_.Focused(), &Picker().TextFind);
  }

  for (const int filter : {100, 106}) {
    delivered_.clear();
    Open(static_cast<std::uint8_t>(filter));
    Type(Picker().TextFind, "вино");
    Enter(1);
    EXPECT_EQ(desktop_.Focused(), &Picker().OKButton);
    Enter(1);
    EXPECT_EQ(delivered_, (std::vector<Delivery>{{2, 0, 0, filter}}));
    EXPECT_FALSE(Picker().IsVisible());
  }
}

TEST_F(Picking, AScannedBarcodeIsOneStatement) {
  Open(2);
  const auto scan = [&](const std::string& code) {
    faults_.Forget();
    desktop_.ExpectInput("отсканируйте Штрихкод", code);
    Click(Picker().CmnFindBar);
  };
  scan("04820000000017");  // as a number: the scanner's leading zero doesn't matter
  EXPECT_EQ(faults_.Statements(),
            Texts{"SELECT DISTINCT COD,NAME,BARCODE,PRISE FROM TOVAR WHERE BARCODE=04820000000017"});
  EXPECT_EQ(Picker().LbllName.Caption(), "4820000000017  Чай чёрный  1");
  EXPECT_EQ(Picker().PickBar, "4820000000017");
  EXPECT_EQ(Picker().PickPrice, 120500);
  Type(Picker().TextKol, "2");
  Enter(1);
  Enter(1);
  EXPECT_EQ(delivered_, (std::vector<Delivery>{{1, 2000, 120500, 2}}));
  EXPECT_EQ(desktop_.Focused(), &Picker().CmnFindBar) << "ready for the next scan";

  // The grid's way to a product without a barcode shows none, although the base holds "0".
  Type(Picker().TextFind, "вино");
  Press(Picker().DataGrid01, "Enter");
  EXPECT_EQ(Picker().LbllName.Caption(), "  Вино красное  2");
  EXPECT_EQ(Picker().PickBar, "");

  // The same way for the other documents: the purchase price, a price alone, a filter.
  shop_.Sql(
      "INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,DATEDOC,RUN,REZ) VALUES "
      "(1,1,1,2000,160500,2000,'2026-11-01 08:00:00',1,0)");
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
  EXPECT_EQ(delivered_.back(), (Delivery{1, 2, 100000500, 2}));
  delivered_.pop_back();
  scan("4820000000017");
  Type(Picker().TextKol, std::string(60, '9'));
  desktop_.ExpectRuntimeError();
  Click(Picker().OKButton);

  scan("");
  EXPECT_TRUE(faults_.Statements().empty());
  desktop_.ExpectInput("отсканируйте Штрихкод", "111");
  desktop_.Expect("НЕТ ТАКОГО ШТРИХКОДА В БАЗЕ ДАННЫХ!", BoxAnswer::kOk, BoxIcon::kExclamation);
  Click(Picker().CmnFindBar);
  for (const char* letters : {"ABC", "4'"}) {
    desktop_.ExpectRuntimeError();
    scan(letters);
  }
  EXPECT_EQ(delivered_.size(), 1U);
}

TEST_F(Picking, SortsStayOnTheirProduct) {
  Open(2);
  struct Case {
    Button& button;
    const char* tail;
    Texts names;
  };
  const Case kCases[] = {{Picker().CmdCod, "COD", {"Чай чёрный", "Вино красное", "Вода", "чайник"}},
                         {Picker().CmdBar, "BARCODE", {"Вода", "Вино красное", "Чай чёрный", "чайник"}},
                         {Picker().CmdPrice, "PRISE", {"чайник", "Вода", "Чай чёрный", "Вино красное"}},
                         {Picker().CmdKol, "(OST-KOL)", {"Вода", "чайник", "Вино красное", "Чай чёрный"}},
                         {Picker().CmdName, "NAME", {"Вино красное", "Вода", "Чай чёрный", "чайник"}}};
  DataGrid& grid = Picker().DataGrid01;
  GoTo(grid, 3);
  for (const Case& sort : kCases) {
    faults_.Forget();
    Click(sort.button);
    EXPECT_EQ(faults_.Statements(),
              Texts{std::string("SELECT COD,NAME,BARCODE,ROUND(PRISE/100,2),ROUND((OST-KOL)/1000,3),N5/1000 FROM TOVAR "
                                "GROUP BY COD ORDER BY ") +
                    sort.tail});
    EXPECT_EQ(Names(grid), sort.names);
    EXPECT_EQ(grid.CurrentText("Наименование"), "Чай чёрный") << sort.tail;
  }
  faults_.Forget();
  Click(Picker().CmdVid);
  EXPECT_TRUE(faults_.Statements().back().ends_with("ORDER BY N5"));
  EXPECT_EQ(grid.CurrentText("Наименование"), "Чай чёрный");
  EXPECT_EQ(grid.CurrentText("Цена"), "120,50");
  EXPECT_EQ(grid.CurrentText("Остат"), "3,500");
  // Coming back from another window the list is in the order of names again.
  desktop_.UserAction([&] { desktop_.Activated(app_->Main); });
  desktop_.UserAction([&] { desktop_.Activated(Picker()); });
  EXPECT_EQ(Names(grid)[0], "Вино красное");
  EXPECT_EQ(grid.CurrentText("Наименование"), "Чай чёрный");
  Press(Picker().TextFind, "Up");
  EXPECT_EQ(grid.CurrentText("Наименование"), "Вода");
  Press(Picker().TextFind, "Down");
  Type(Picker().TextFind, "x");
  Click(Picker().CmdClearFind);
  EXPECT_EQ(Picker().TextFind.Text(), "");
  // A list that couldn't be read is read again by the next sort and the next coming back.
  faults_.CutAt(1);
  desktop_.ExpectRuntimeError();
  Click(Picker().CmdCod);
  EXPECT_EQ(grid.Rows(), 0);
  Click(Picker().CmdCod);
  EXPECT_EQ(grid.Rows(), 4);
  Type(Picker().TextFind, "чай ч");
  // The product is gone when the list is read again: the cursor stays near where it was.
  shop_.Sql("DELETE FROM TOVAR WHERE COD=1");
  Click(Picker().CmdName);
  EXPECT_EQ(grid.Rows(), 3);
  EXPECT_GT(grid.Row(), 0);
}

TEST_F(Picking, TheCardAndTheDeletionServeThePickerToo) {
  Open(1);
  const auto name = [&] { return Picker().DataGrid01.CurrentText("Наименование"); };
  desktop_.InModal([&](Form&) {
    Type(Card().TextName, "Мёд");
    Type(Card().TextPrise, "300");
    Click(Card().OKButton);
  });
  Click(Picker().CmdNewPLU);
  EXPECT_EQ(name(), "Мёд");
  EXPECT_EQ(Picker().TextFind.Text(), "");
  EXPECT_EQ(Tab().DataGrid1[0].Rows(), 5) << "the catalogue behind has it too";

  Type(Picker().TextFind, "чай ч");
  desktop_.InModal([&](Form&) {
    Type(Card().TextName, "Яблоко");
    Type(Card().TextPrise, "1");
    Click(Card().OKButton);
  });
  Click(Picker().CmdCopyPLU);
  EXPECT_EQ(name(), "Яблоко");
  desktop_.InModal([&](Form&) {
    EXPECT_EQ(Card().LabelCod.Caption(), "9");
    Press(Card().TextPrise, "Esc");
  });
  Click(Picker().CmdShowPLU);
  desktop_.Expect("Удалить товар 'Яблоко', код 9?", BoxAnswer::kOk, BoxIcon::kQuestion);
  Click(Picker().CmdDelPLU);
  EXPECT_EQ(Picker().DataGrid01.Rows(), 5);
  EXPECT_EQ(Tab().DataGrid1[0].Rows(), 5);

  // Changes of mind: Esc in the fields starts over, Esc in the list closes; leaving the window empties the fields.
  Type(Picker().TextFind, "чай ч");
  for (TextBox* field : {&Picker().TextKol, &Picker().TextPrice}) {
    Press(Picker().DataGrid01, "Enter");
    Type(Picker().TextKol, "5");
    Press(*field, "Esc");
    EXPECT_EQ(Picker().LbllName.Caption() + Picker().TextKol.Text(), "");
    EXPECT_TRUE(Picker().IsVisible());
  }
  Press(Picker().DataGrid01, "Enter");
  Type(Picker().TextKol, "5");
  desktop_.UserAction([&] { desktop_.Activated(app_->Main); });
  EXPECT_EQ(Picker().TextKol.Text(), "");
  desktop_.UserAction([&] { desktop_.Activated(Picker()); });
  Press(Picker().DataGrid01, "Esc");
  EXPECT_FALSE(Picker().IsVisible());
  EXPECT_TRUE(delivered_.empty());
}

TEST_F(Picking, TheDialogAsksTheSameOfAKnownProduct) {
  Open(3);
  struct Case {
    int code;
    const char* shown_quantity;
    std::vector<std::pair<TextBox*, const char*>> typed;  ///< field and text, each ended by Enter
    Delivery delivered;
  };
  TextBox* kol = &Dialog().TextKol;
  TextBox* price = &Dialog().TextPrice;
  const Case kCases[] = {{1, "1,5", {{kol, "2"}, {price, "10,25"}}, {1, 2000, 10250, 1}},
                         {2, "1,5", {{kol, "1,5"}, {price, "0"}}, {1, 1500, 0, 2}},
                         {3, "1,5", {{kol, "4"}}, {1, 4000, 1200, 3}},
                         {5, "1,5", {{price, "7"}}, {1, 0, 7000, 5}},
                         {7, "1,5", {{kol, "-1"}}, {1, -1000, 1200, 7}}};
  for (const Case& one : kCases) {
    SCOPED_TRACE(one.code);
    delivered_.clear();
    Dialog().DialCod = 1;
    Dialog().DialName = "Чай";
    Dialog().DialKol = 1500;
    Dialog().DialPrice = 1200;
    Dialog().FormCode = static_cast<std::uint8_t>(one.code);
    desktop_.InModal([&](Form&) {
      EXPECT_EQ(Dialog().LbllName.Caption(), "Чай  1  ");
      EXPECT_EQ(kol->Text(), one.shown_quantity);
      EXPECT_EQ(price->Text(), "1,20");
      for (const auto& [field, text] : one.typed) {
        EXPECT_EQ(desktop_.Focused(), field);
        Type(*field, "1.5");
        Press(*field, "Enter");
        EXPECT_EQ(desktop_.Focused(), field) << "no number: the keyboard stays";
        Type(*field, text);
        Press(*field, "Enter");
      }
      if (Dialog().IsVisible()) Press(*desktop_.Focused(), "Enter");
    });
    desktop_.UserAction([&] { Dialog().ShowModal(); });
    EXPECT_EQ(delivered_, std::vector<Delivery>{one.delivered});
    EXPECT_EQ(kol->Text() + price->Text(), "");
  }
  Dialog().DialKol = Dialog().DialPrice = 0;
  desktop_.InModal([&](Form&) {
    EXPECT_EQ(kol->Text() + price->Text(), "");
    Press(*kol, "Esc");
  });
  desktop_.UserAction([&] { Dialog().ShowModal(); });
  EXPECT_EQ(delivered_.size(), 1U);
}

}  // namespace
}  // namespace zrt
