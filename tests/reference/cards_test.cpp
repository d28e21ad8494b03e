#include <fmt/format.h>

#include <functional>
#include <string>
#include <vector>

#include "core/errors.h"
#include "support/program_test.h"

namespace zrt {
namespace {

using test::ProgramTest;
using Texts = std::vector<std::string>;

constexpr const char* kNotANumber = "Введите числовое значение!";
constexpr const char* kNegative = "Скидка не может быть отрицательной!";
constexpr const char* kTooMuch = "Проверьте скидку!";
constexpr const char* kTaken = "Дисконтная карта не уникальна!";
constexpr const char* kNoKind = "Код Вида Дисконтной карты должен быть > 100!";

constexpr const char* kListCards =
    "SELECT REZ As 'Num',BARCODE As 'CardBarcode',PROZ As 'Type' FROM DISCOUNT ORDER BY REZ";
constexpr const char* kListKinds = "SELECT CARD FROM TOTALSKID GROUP BY CARD";
constexpr const char* kListRules = "SELECT ID,CARD,TOV,PROZ,TOTAL FROM TOTALSKID ORDER BY CARD";

/// The program with a few cards, a holder and three rules, the tab of the reference data in front.
class Reference : public ProgramTest {
 protected:
  Reference() : ProgramTest(test::Stage::kPlain) {}

  void Start(const Texts& statements = {}) {
    shop_.Sql(
        "INSERT INTO DISCOUNT (BARCODE,TOTAL,LASTCASH,PROZ,REZ) VALUES ('1001',50000,'12.11.2026',5,1),"
        "('1002',7,'0',101,2),('1005',1,'0',10,5)");
    shop_.Sql("INSERT INTO DKHOLDER (ID,CARD,NAME,FNAME,ADRES,TEL) VALUES (2,'1002','Анна','Анна','Ленина 1','22')");
    shop_.Sql("INSERT INTO TOTALSKID (ID,CARD,TOV,PROZ,TOTAL) VALUES (1,101,0,3,0),(2,101,1,5,100000),(3,102,0,7,0)");
    for (const std::string& statement : statements) shop_.Sql(statement);
    ProgramTest::Start("sprav");
  }

  CardsTab& Tab() { return app_->Main.Cards; }
  frmDK& Card() { return app_->DiscountCard; }
  frmVDk& Kinds() { return app_->CardKinds; }

  void GoTo(DataGrid& grid, int row) {
    desktop_.UserAction([&] { grid.UserRow(row); });
  }
  /// Opens the card of this row of the list; `work` is done in it.
  void InCard(int row, const std::function<void()>& work) {
    GoTo(Tab().DataGrid5, row);
    desktop_.InModal([&](Form&) { work(); });
    Click(Tab().CmdDKShow);
  }
  void InNewCard(const std::function<void()>& work) {
    desktop_.InModal([&](Form&) { work(); });
    Click(Tab().CmdDKNew);
  }

  Texts AllCards() {
    return shop_.Column("SELECT CONCAT_WS('|',REZ,BARCODE,PROZ,TOTAL,LASTCASH) FROM DISCOUNT ORDER BY REZ");
  }
  Texts AllHolders() {
    return shop_.Column("SELECT CONCAT_WS('|',ID,CARD,NAME,FNAME,ADRES,TEL) FROM DKHOLDER ORDER BY ID");
  }
  Texts AllRules() {
    return shop_.Column("SELECT CONCAT_WS('|',ID,CARD,TOV,PROZ,TOTAL) FROM TOTALSKID ORDER BY ID,PROZ");
  }
};

using Cards = Reference;
using CardKindRules = Reference;

// Cards

TEST_F(Cards, ASaveWritesTheHolderFirstAndDeletesBeforeItSearches) {
  Start();
  InNewCard([&] {
    EXPECT_EQ(Card().Caption(), "Дисконтная карта: - НОВАЯ");
    EXPECT_EQ(Card().LabelCod.Caption(), "6");
    EXPECT_EQ(Card().TextSkd.Text(), "0");
    EXPECT_EQ(desktop_.Focused(), &Card().TextName);
    Type(Card().TextName, " 777 ");
    Press(Card().TextName, "Enter");
    EXPECT_EQ(desktop_.Focused(), &Card().TextSkd);
    Type(Card().TextSkd, "7,5");
    Click(Card().CheckHolder);
    Type(Card().TxtHName, " О'Нил ");
    Type(Card().TxtHAddr, std::string(30, 'a') + "'" + std::string(30, 'b'));
    Type(Card().TxtHTel, " 33-22 ");
    Press(Card().TxtHTel, "Enter");
  });
  const Texts expected = {
      "SELECT REZ FROM DISCOUNT ORDER BY REZ",
      kListKinds,
      "SELECT NAME,ADRES,TEL FROM DKHOLDER WHERE CARD='777'",
      "DELETE FROM DKHOLDER WHERE ID=6",
      "INSERT INTO DKHOLDER (ID,CARD,NAME,FNAME,ADRES,TEL) VALUES (6,'777','ОНил','ОНил','" + std::string(30, 'a') +
          std::string(19, 'b') + "','33-22')",
      "DELETE FROM DISCOUNT WHERE REZ=6",
      "SELECT BARCODE FROM DISCOUNT WHERE BARCODE=' 777 '",
      "INSERT INTO DISCOUNT (BARCODE,TOTAL,LASTCASH,PROZ,REZ) VALUES (' 777 ',1,'0',8,6)",
      kListCards,
  };
  EXPECT_EQ(faults_.Statements(), expected);
  EXPECT_EQ(Tab().DataGrid5.CurrentText("CardBarcode"), " 777 ");
  EXPECT_EQ(Tab().DataGrid5.CurrentText("Type"), "8");
}

TEST_F(Cards, TheNextNumberFollowsTheHighest) {
  struct Case {
    const char* shop;
    const char* number;  ///< nullptr: the numbers have run out
  };
  const Case kCases[] = {{"DELETE FROM DISCOUNT WHERE REZ=2", "6"},
                         {"DELETE FROM DISCOUNT WHERE REZ=5", "2"},
                         {"DELETE FROM DISCOUNT", "1"},
                         {"INSERT INTO DISCOUNT (BARCODE,REZ) VALUES ('x',32766)", "32767"},
                         {"UPDATE DISCOUNT SET REZ=32767", nullptr}};
  Start();
  for (const Case& one : kCases) {
    SCOPED_TRACE(one.shop);
    shop_.Sql(one.shop);
    if (one.number == nullptr) {
      desktop_.ExpectRuntimeError();
      Click(Tab().CmdDKNew);
      EXPECT_FALSE(Card().IsVisible());
      continue;
    }
    InNewCard([&] {
      EXPECT_EQ(Card().LabelCod.Caption(), one.number);
      Press(Card().TextName, "Esc");
    });
  }
}

TEST_F(Cards, WhatIsTypedAsTheDiscountIsRoundedAndChecked) {
  struct Case {
    const char* typed;
    const char* message;  ///< "" for a discount that is taken, nullptr for a run-time error
    const char* stored;
  };
  const Case kCases[] = {
      {"0", "", "0"},          {"2,5", "", "3"},          {" 12 ", "", "12"},       {"-0,4", "", "0"},
      {"100", "", "100"},      {"101", "", "101"},        {"777", "", "777"},       {"999,4", "", "999"},
      {"", kNotANumber, ""},   {"пять", kNotANumber, ""}, {"1.5", kNotANumber, ""}, {"5'", kNotANumber, ""},
      {"-0,5", kNegative, ""}, {"-5", kNegative, ""},     {"999,5", kTooMuch, ""},  {"1000", kTooMuch, ""},
      {"32768", nullptr, ""},
  };
  Start();
  for (const Case& one : kCases) {
    SCOPED_TRACE(one.typed);
    const Texts before = AllCards();
    const bool taken = one.message != nullptr && *one.message == '\0';
    InCard(1, [&] {
      Type(Card().TextSkd, one.typed);
      faults_.Forget();
      if (one.message == nullptr) desktop_.ExpectRuntimeError();
      if (one.message != nullptr && !taken) desktop_.Expect(one.message, BoxAnswer::kOk, BoxIcon::kCritical);
      Click(Card().OKButton);
      if (taken) return;
      EXPECT_TRUE(Card().IsVisible());
      EXPECT_TRUE(faults_.Statements().empty());
      EXPECT_EQ(desktop_.Focused(), &Card().TextSkd);
      Click(Card().CancelButton);
    });
    if (taken) {
      EXPECT_EQ(AllCards()[0], std::string("1|1001|") + one.stored + "|1|0");
      EXPECT_EQ(Tab().DataGrid5.CurrentText("Num"), "1");
    } else {
      EXPECT_EQ(AllCards(), before);
    }
  }
}

TEST_F(Cards, ABarcodeOfAnotherCardLeavesThisOneDeletedUntilItIsMended) {
  Start();
  InCard(1, [&] {
    Type(Card().TextName, "1005");
    Click(Card().CheckHolder);
    Type(Card().TxtHName, "Пётр");
    desktop_.Expect(kTaken, BoxAnswer::kOk, BoxIcon::kCritical);
    Click(Card().OKButton);
    EXPECT_EQ(AllCards(), (Texts{"2|1002|101|7|0", "5|1005|10|1|0"}));
    EXPECT_EQ(AllHolders().front(), "1|1005|Пётр|Пётр||");  // the holder was written before
    EXPECT_EQ(desktop_.Focused(), &Card().TextName);
    EXPECT_EQ(Card().TextName.SelLength(), 4);
    // A quote isn't mended, and leaves the card deleted as well.
    Type(Card().TextName, "10'05");
    Click(Card().CheckHolder);
    desktop_.ExpectRuntimeError();
    Click(Card().OKButton);
    EXPECT_EQ(AllCards().size(), 2U);
    Type(Card().TextName, "1001");
    Click(Card().OKButton);
  });
  EXPECT_EQ(AllCards(), (Texts{"1|1001|5|1|0", "2|1002|101|7|0", "5|1005|10|1|0"}));
}

/// The row of the list is chosen by the barcode, but for those that the search takes otherwise than as they stand.
TEST_F(Cards, AnOddBarcodeIsSavedAndChosenAndTheWindowCloses) {
  struct Case {
    const char* typed;
    const char* stored;
  };
  const Case kCases[] = {{"a''b", "a'b"}, {"100%", "100%"},   {"%", "%"},
                         {"", ""},        {"10%05", "10%05"}, {"1005 ж", "1005 ж"}};
  Start();
  for (const Case& one : kCases) {
    SCOPED_TRACE(one.typed);
    InCard(2, [&] {
      Type(Card().TextName, one.typed);
      Click(Card().OKButton);
    });
    EXPECT_EQ(shop_.Value("SELECT BARCODE FROM DISCOUNT WHERE REZ=2"), one.stored);
    EXPECT_EQ(Tab().DataGrid5.CurrentText("Num"), "2");
  }
}

TEST_F(Cards, TheHoldersPartOpensWithWhatIsKnownAndClosesEmpty) {
  Start();
  InCard(2, [&] {
    EXPECT_EQ(Card().Height(), 1860);
    EXPECT_FALSE(Card().TxtHName.IsUsable());
    Click(Card().CheckHolder);
    EXPECT_EQ(Card().Height(), 4280);
    EXPECT_TRUE(Card().TxtHName.IsUsable());
    EXPECT_EQ(Card().TxtHAddr.Text(), "Ленина 1");
    EXPECT_EQ(Card().TxtHTel.Text(), "22");
    Click(Card().CheckHolder);
    EXPECT_EQ(Card().Height(), 1860);
    EXPECT_EQ(Card().TxtHName.Text(), "");
    // Unticked, a save leaves the holder alone.
    Click(Card().OKButton);
  });
  EXPECT_EQ(AllHolders().size(), 1U);
  InCard(1, [&] {
    Click(Card().CheckHolder);
    EXPECT_EQ(Card().TxtHName.Text(), "");
    Type(Card().TxtHName, "чужой");
    Press(Card().CheckHolder, "Esc");
  });
  // The next card opens closed, whatever the one before was left with.
  InCard(2, [&] {
    EXPECT_FALSE(Card().CheckHolder.Value());
    EXPECT_EQ(Card().Height(), 1860);
    EXPECT_EQ(Card().TxtHName.Text(), "");
    // The tick stands and the part is open also for a holder who couldn't be read: ticking again reads him.
    faults_.FailAt(1);
    desktop_.ExpectRuntimeError();
    Click(Card().CheckHolder);
    EXPECT_TRUE(Card().CheckHolder.Value());
    EXPECT_EQ(Card().Height(), 4280);
    Click(Card().CheckHolder);
    Click(Card().CheckHolder);
    EXPECT_EQ(Card().TxtHTel.Text(), "22");
    Click(Card().OKButton);
  });
  // Nor may he go over to the next card when that one opens without the list of kinds.
  InCard(2, [&] {
    Click(Card().CheckHolder);
    Press(Card().CheckHolder, "Esc");
  });
  GoTo(Tab().DataGrid5, 1);
  faults_.FailAt(2);
  desktop_.ExpectRuntimeError();
  Click(Tab().CmdDKShow);
  EXPECT_TRUE(Card().IsVisible());
  EXPECT_EQ(Card().TextSkd.Text(), "5");
  Click(Card().OKButton);
  EXPECT_FALSE(Card().IsVisible());
  EXPECT_EQ(AllHolders(), (Texts{"2|1002|Анна|Анна|Ленина 1|22"}));
}

TEST_F(Cards, AHolderIsWrittenOnlyWithABarcodeAndSomethingKnown) {
  struct Case {
    const char* card;
    const char* name;
    const char* address;
    const char* phone;
    Texts holders;
  };
  const Case kCases[] = {{"", "Ева", "", "", {}},
                         {"9", "", "", "", {}},
                         {"9", "", "", "5", {"2|9||||5"}},
                         {"9", "'", "д'1'", "", {"2|9|||д1|"}}};
  Start();
  for (const Case& one : kCases) {
    shop_.Sql("UPDATE DKHOLDER SET NAME='прежний'");
    Card().SaveCardHolder(2, one.card, one.name, one.address, one.phone);
    EXPECT_EQ(AllHolders(), one.holders);
  }
  // The address is cut by its column, silently, as every text is.
  Card().SaveCardHolder(2, "9", "Ева", std::string(50, 'x'), "");
  EXPECT_EQ(AllHolders().front(), "2|9|Ева|Ева|" + std::string(20, 'x') + "|");
  EXPECT_THROW(Card().SaveCardHolder(2, "9", "Ева", "", "5'5"), DatabaseError);
  EXPECT_TRUE(AllHolders().empty());
}

TEST_F(Cards, TheKindsAreOfferedAndWhatStandsInTheFieldStays) {
  Start();
  InCard(3, [&] {
    EXPECT_EQ(Card().Caption(), "Дисконтная карта");
    EXPECT_EQ(Card().TextSkd.Items(), (Texts{"101", "102"}));
    EXPECT_EQ(Card().TextSkd.Text(), "10");
    EXPECT_EQ(Card().TextSkd.SelLength(), 2);
    EXPECT_EQ(desktop_.Focused(), &Card().TextSkd);
    Type(Card().TextSkd, "102");
    Press(Card().TextSkd, "Enter");
  });
  EXPECT_EQ(AllCards().back(), "5|1005|102|1|0");
  EXPECT_EQ(faults_.Statements().front(), "SELECT REZ,BARCODE,PROZ FROM DISCOUNT WHERE REZ=5 GROUP BY REZ");
}

TEST_F(Cards, ListWithoutACurrentCardAndCardsThatAreGone) {
  Start();
  shop_.Sql("DELETE FROM DISCOUNT WHERE REZ=5");
  Click(Tab().CmdDKShow);  // the list still shows it; nothing opens
  shop_.Sql("DELETE FROM DISCOUNT");
  Tab().OpenCards();
  faults_.Forget();
  Click(Tab().CmdDKShow);
  Click(Tab().CmdDKDel);
  desktop_.UserAction([&] { Tab().DataGrid5.UserDblClick(); });
  EXPECT_TRUE(faults_.Statements().empty());
  // A barcode that the code page lacks is found by nobody, and the list stands on no card.
  InNewCard([&] {
    Type(Card().TextName, "№€✓");
    Press(Card().TextSkd, "Enter");
  });
  EXPECT_EQ(Tab().DataGrid5.Rows(), 1);
}

TEST_F(Cards, DeletingAsksAndLeavesTheHolder) {
  Start();
  GoTo(Tab().DataGrid5, 2);
  faults_.Forget();
  desktop_.Expect("Удалить дисконтную карту '1002'?", BoxAnswer::kCancel, BoxIcon::kQuestion);
  Click(Tab().CmdDKDel);
  EXPECT_TRUE(faults_.Statements().empty());
  desktop_.Expect("Удалить дисконтную карту '1002'?", BoxAnswer::kOk, BoxIcon::kQuestion);
  Click(Tab().CmdDKDel);
  EXPECT_EQ(faults_.Statements(), (Texts{"DELETE FROM DISCOUNT WHERE REZ=2", kListCards}));
  EXPECT_EQ(Tab().DataGrid5.CurrentText("Num"), "5");
  EXPECT_EQ(Tab().DataGrid5.Columns().at(2).align, GridColumn::Align::kRight);
  EXPECT_EQ(AllHolders().size(), 1U);
}

TEST_F(Cards, ClearingWantsThePasswordAndAYes) {
  const char* const password = "Для полного удаления дисконтных карт введите пароль администратора:";
  const char* const question =
      "Подтвердите удаление ВСЕХ дисконтных карт,\n\rудаление ВСЕХ видов дисконтных карт и\n\r"
      "удаление ВСЕХ данных о держателях карт!";
  Start();
  for (const char* entry : {"", "357219"}) {
    desktop_.ExpectInput(password, entry);
    Click(Tab().CmdClrAllDKard);
  }
  desktop_.ExpectInput(password, "357218");
  desktop_.Expect(question, BoxAnswer::kCancel, BoxIcon::kQuestion);
  Click(Tab().CmdClrAllDKard);
  EXPECT_TRUE(faults_.Statements().empty());

  desktop_.ExpectInput(password, "357218");
  desktop_.Expect(question, BoxAnswer::kOk, BoxIcon::kQuestion);
  Click(Tab().CmdClrAllDKard);
  EXPECT_EQ(faults_.Statements(),
            (Texts{"DELETE FROM DISCOUNT", "DELETE FROM TOTALSKID", "DELETE FROM DKHOLDER", kListCards}));
  EXPECT_EQ(Tab().DataGrid5.Rows(), 0);
}

TEST_F(Cards, TheRestrictedModeOpensNothing) {
  Start({"UPDATE CONST SET N3=2 WHERE COD=7"});
  desktop_.UserAction([&] { Tab().DataGrid5.UserDblClick(); });
  Press(Tab().DataGrid5, "Enter");
  for (Button* button : {&Tab().CmdDKNew, &Tab().CmdDKShow, &Tab().CmdDKDel, &Tab().CmdVDk}) Click(*button);
  EXPECT_TRUE(faults_.Statements().empty());
  EXPECT_FALSE(Tab().CmdClrAllDKard.Visible());
}

// Kinds of cards

TEST_F(CardKindRules, TheNextNumberFollowsTheHighest) {
  Start();
  Click(Tab().CmdVDk);
  for (const auto& [shop, number] : {std::pair{"DELETE FROM TOTALSKID WHERE ID=1", "4"},
                                     {"DELETE FROM TOTALSKID WHERE ID=3", "3"},
                                     {"DELETE FROM TOTALSKID", "1"},
                                     {"INSERT INTO TOTALSKID (ID,CARD) VALUES (NULL,101)", "1"}}) {
    shop_.Sql(shop);
    Click(Kinds().CmdNew);
    EXPECT_EQ(Kinds().LabelCod.Caption(), number) << shop;
    EXPECT_EQ(desktop_.Focused(), &Kinds().Text2);
    desktop_.UserAction([&] { Kinds().Close(); });
    Click(Tab().CmdVDk);
  }
}

TEST_F(CardKindRules, AnEntryIsCheckedFieldByField) {
  struct Case {
    const char* kind;
    const char* percentage;
    const char* threshold;
    const char* message;  ///< nullptr: a run-time error
    int field;            ///< 1 to 3: where the keyboard is afterwards
    const char* kind_after;
  };
  const Case kCases[] = {
      {"", "x", "y", kNotANumber, 1, ""},
      {"вид", "0", "0", kNotANumber, 1, "вид"},
      {"101", "5%", "y", kNotANumber, 2, "101"},
      {"101", "5", "1.5", kNotANumber, 3, "101"},
      {"101", "5", "1'", kNotANumber, 3, "101"},
      {"5", "5", "0", kNoKind, 1, "106"},
      {"100", "5", "0", kNoKind, 1, "201"},
      {"100,5", "5", "0", kNoKind, 1, "201"},  // a half goes to the even number
      {"0", "5", "0", kNoKind, 1, "0"},
      {"-5", "5", "0", kNoKind, 1, "-5"},
      {"32768", "5", "0", nullptr, 2, "32768"},
      {"101", "32768", "0", nullptr, 2, "101"},
      {"101", "5", "2147483648", nullptr, 2, "101"},
  };
  Start();
  Click(Tab().CmdVDk);
  const Texts before = AllRules();
  for (const Case& one : kCases) {
    SCOPED_TRACE(fmt::format("{}/{}/{}", one.kind, one.percentage, one.threshold));
    if (!Kinds().CmdOk.Enabled()) Click(Kinds().CmdNew);
    Kinds().Text2.SetFocus();
    Type(Kinds().Text1, one.kind);
    Type(Kinds().Text2, one.percentage);
    Type(Kinds().Text3, one.threshold);
    faults_.Forget();
    if (one.message == nullptr) {
      desktop_.ExpectRuntimeError();
    } else {
      desktop_.Expect(one.message, BoxAnswer::kOk, BoxIcon::kCritical, "ZASTAVA");
    }
    Click(Kinds().CmdOk);
    EXPECT_TRUE(faults_.Statements().empty());
    TextBox* const fields[] = {&Kinds().Text1, &Kinds().Text2, &Kinds().Text3};
    EXPECT_EQ(desktop_.Focused(), fields[one.field - 1]);
    EXPECT_EQ(Kinds().Text1.Text(), one.kind_after);
    if (one.message == kNoKind) {
      EXPECT_EQ(Kinds().Text1.SelLength(), static_cast<int>(Kinds().Text1.Text().size()));
    }
  }
  EXPECT_EQ(AllRules(), before);
  Type(Kinds().Text1, "32767");
  Type(Kinds().Combo1, "9");
  Type(Kinds().Text2, "-2,5");
  Type(Kinds().Text3, "2147483647");
  Press(Kinds().Text3, "Enter");
  EXPECT_EQ(AllRules().back(), "4|32767|9|-2|2147483647");
}

/// What can be pressed and typed: at rest, during an entry that "Новый" began, and during one that "Изменить" began.
struct State {
  bool fields, write, create, change;
};

TEST_F(CardKindRules, ARuleIsOutOfTheTableWhileItIsChanged) {
  const State kRest{false, false, true, true}, kNew{true, true, false, false}, kChange{true, true, true, false};
  Start();
  const auto expect = [&](const State& state) {
    for (Control* field : {static_cast<Control*>(&Kinds().Text1), static_cast<Control*>(&Kinds().Combo1),
                           static_cast<Control*>(&Kinds().Text2), static_cast<Control*>(&Kinds().Text3)}) {
      EXPECT_EQ(field->Enabled(), state.fields) << field->Name();
    }
    EXPECT_EQ(Kinds().CmdOk.Enabled(), state.write);
    EXPECT_EQ(Kinds().CmdNew.Enabled(), state.create);
    EXPECT_EQ(Kinds().CmdEdit.Enabled(), state.change);
    EXPECT_EQ(Kinds().CmdDel.Enabled(), state.change);
  };
  Click(Tab().CmdVDk);
  expect(kRest);
  EXPECT_EQ(Kinds().DataGrid05.Row(), 3);
  EXPECT_EQ(Kinds().Combo1.Items().size(), 10U);

  GoTo(Kinds().DataGrid05, 2);
  faults_.Forget();
  Click(Kinds().CmdEdit);
  expect(kChange);
  EXPECT_EQ(Kinds().Text3.Text(), "100000");
  EXPECT_EQ(AllRules(), (Texts{"1|101|0|3|0", "3|102|0|7|0"}));
  Type(Kinds().Text2, "6");
  Click(Kinds().CmdOk);
  expect(kRest);
  EXPECT_EQ(desktop_.Focused(), &Kinds().DataGrid05);
  EXPECT_EQ(Kinds().LabelCod.Caption(), "");
  EXPECT_EQ(Kinds().Text1.Text(), "101");
  EXPECT_EQ(faults_.Statements(),
            (Texts{"DELETE FROM TOTALSKID WHERE ID=2", kListRules,
                   "INSERT INTO TOTALSKID (ID,CARD,TOV,PROZ,TOTAL) VALUES (2,101,1,6,100000)", kListRules}));

  Click(Kinds().CmdNew);
  expect(kNew);
  Press(Kinds().Text2, "Esc");  // a slip on Esc doesn't leave the form during an entry
  EXPECT_TRUE(Kinds().IsVisible());
  Press(Kinds().DataGrid05, "Esc");
  EXPECT_FALSE(Kinds().IsVisible());
  Click(Tab().CmdVDk);
  expect(kNew);
  EXPECT_EQ(Kinds().Combo1.Text(), "0");
  desktop_.UserAction([&] { Kinds().Close(); });

  // Leaving the form loses what was being changed.
  Click(Tab().CmdVDk);
  Click(Kinds().CmdEdit);
  desktop_.UserAction([&] { Kinds().Close(); });
  Click(Tab().CmdVDk);
  expect(kRest);
  EXPECT_EQ(AllRules().size(), 2U);

  Press(Kinds().DataGrid05, "Home");
  faults_.Forget();
  Click(Kinds().CmdDel);
  EXPECT_EQ(faults_.Statements(), (Texts{"DELETE FROM TOTALSKID WHERE ID=" + std::string("1"), kListRules}));
  Click(Kinds().CmdDel);
  Click(Kinds().CmdEdit);  // nothing to change
  expect(kRest);
  desktop_.ExpectRuntimeError();
  Click(Kinds().CmdDel);
}

TEST_F(CardKindRules, ARuleThatLacksAValueIsNotTakenOut) {
  Start();
  for (const char* column : {"CARD", "TOV", "PROZ", "TOTAL"}) {
    SCOPED_TRACE(column);
    shop_.Sql("DELETE FROM TOTALSKID");
    shop_.Sql("INSERT INTO TOTALSKID (ID,CARD,TOV,PROZ,TOTAL) VALUES (1,101,0,3,0)");
    shop_.Sql(fmt::format("UPDATE TOTALSKID SET {}=NULL", column));
    Click(Tab().CmdVDk);
    desktop_.ExpectRuntimeError();
    Click(Kinds().CmdEdit);
    EXPECT_FALSE(Kinds().CmdOk.Enabled());
    EXPECT_EQ(AllRules().size(), 1U);
    desktop_.UserAction([&] { Kinds().Close(); });
  }
}

}  // namespace
}  // namespace zrt
