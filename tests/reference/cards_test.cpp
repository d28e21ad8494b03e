// What the windows of the discount cards and of their kinds take and refuse; their journeys are plays.

#include <fmt/format.h>

#include <functional>
#include <string>
#include <vector>

#include "core/errors.h"
#include "support/program_test.h"

namespace zrt {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kNotANumber = "Введите числовое значение!";
constexpr const char* kNegative = "Скидка не может быть отрицательной!";
constexpr const char* kTooMuch = "Проверьте скидку!";
constexpr const char* kNoKind = "Код Вида Дисконтной карты должен быть > 100!";

/// The program with a few cards, a holder and three rules, the tab of the reference data in front.
class Cards : public test::ProgramTest {
 protected:
  Cards() : ProgramTest(test::Stage::kPlain) {
    shop_.Sql(
        "INSERT INTO DISCOUNT (BARCODE,TOTAL,LASTCASH,PROZ,REZ) VALUES ('1001',50000,'12.11.2026',5,1),"
        "('1002',7,'0',101,2),('1005',1,'0',10,5)");
    shop_.Sql("INSERT INTO DKHOLDER (ID,CARD,NAME,FNAME,ADRES,TEL) VALUES (2,'1002','Анна','Анна','Ленина 1','22')");
    shop_.Sql("INSERT INTO TOTALSKID (ID,CARD,TOV,PROZ,TOTAL) VALUES (1,101,0,3,0),(2,101,1,5,100000),(3,102,0,7,0)");
    Start("sprav");
  }

  CardsTab& Tab() { return app_->Main.Cards; }
  frmDK& Card() { return app_->DiscountCard; }
  frmVDk& Kinds() { return app_->CardKinds; }

  /// Opens the card of this row of the list; `work` is done in it.
  void InCard(int row, const std::function<void()>& work) {
    Do([&] { Tab().DataGrid5.UserRow(row); });
    desktop_.InModal([&](Form&) { work(); });
    Click(Tab().CmdDKShow);
  }

  Texts All(const char* columns, const char* table) {
    return shop_.Column(fmt::format("SELECT CONCAT_WS('|',{}) FROM {} ORDER BY 1", columns, table));
  }
  Texts AllCards() { return All("REZ,BARCODE,PROZ,TOTAL,LASTCASH", "DISCOUNT"); }
  Texts AllHolders() { return All("ID,CARD,NAME,FNAME,ADRES,TEL", "DKHOLDER"); }
  Texts AllRules() { return All("ID,CARD,TOV,PROZ,TOTAL", "TOTALSKID"); }
};

TEST_F(Cards, WhatIsTypedAsTheDiscountIsRoundedAndChecked) {
  for (const auto& [typed, stored] : {std::pair{"0", "0"},
                                      {"2,5", "3"},
                                      {" 12 ", "12"},
                                      {"-0,4", "0"},
                                      {"100", "100"},
                                      {"101", "101"},
                                      {"999,4", "999"}}) {
    InCard(1, [&, text = typed] {
      Type(Card().TextSkd, text);
      Click(Card().OKButton);
    });
    EXPECT_EQ(AllCards()[0], std::string("1|1001|") + stored + "|1|0") << typed;
    EXPECT_EQ(Tab().DataGrid5.CurrentText("Num"), "1");
  }
  const Texts before = AllCards();
  for (const auto& [typed, message] : {std::pair{"", kNotANumber},
                                       {"пять", kNotANumber},
                                       {"1.5", kNotANumber},
                                       {"-0,5", kNegative},
                                       {"999,5", kTooMuch},
                                       {"1000", kTooMuch},
                                       {"32768", ""}}) {
    InCard(1, [&, text = typed, said = std::string(message)] {
      Type(Card().TextSkd, text);
      if (said.empty()) desktop_.ExpectRuntimeError();
      if (!said.empty()) desktop_.Expect(said, BoxAnswer::kOk, BoxIcon::kCritical);
      Click(Card().OKButton);
      EXPECT_EQ(desktop_.Focused(), &Card().TextSkd);
      Click(Card().CancelButton);
    });
    EXPECT_EQ(AllCards(), before) << typed;
  }
}

/// The row of the list is found by the card's number: a search takes some barcodes otherwise than as they stand.
TEST_F(Cards, AnOddBarcodeIsSavedAndChosenAndTheWindowCloses) {
  EXPECT_EQ(Tab().DataGrid5.Columns().at(2).align, GridColumn::Align::kRight);
  for (const auto& [typed, stored] : {std::pair{"a''b", "a'b"}, {"%", "%"}, {"", ""}, {"1005 ж", "1005 ж"}}) {
    InCard(2, [&, text = typed] {
      Type(Card().TextName, text);
      Click(Card().OKButton);
    });
    EXPECT_EQ(shop_.Value("SELECT BARCODE FROM DISCOUNT WHERE REZ=2"), stored);
    EXPECT_EQ(Tab().DataGrid5.CurrentText("Num"), "2") << typed;
  }
}

TEST_F(Cards, AHolderIsWrittenOnlyWithABarcodeAndSomethingKnown) {
  struct Case {
    const char* card;
    const char* name;
    std::string address;
    const char* phone;
    Texts holders;
  };
  // The address is cut by its column, silently, as every text is.
  const Case kCases[] = {{"", "Ева", "", "", {}},
                         {"9", "", "", "", {}},
                         {"9", "", "", "5", {"2|9||||5"}},
                         {"9", "'", "д'1'", "", {"2|9|||д1|"}},
                         {"9", "Ева", std::string(50, 'x'), "", {"2|9|Ева|Ева|" + std::string(20, 'x') + "|"}}};
  for (const Case& one : kCases) {
    shop_.Sql("UPDATE DKHOLDER SET NAME='прежний'");
    Card().SaveCardHolder(2, one.card, one.name, one.address, one.phone);
    EXPECT_EQ(AllHolders(), one.holders);
  }
}

TEST_F(Cards, ARuleIsCheckedFieldByField) {
  struct Case {
    const char* kind;
    const char* percentage;
    const char* threshold;
    const char* message;  ///< nullptr: a run-time error, which leaves the keyboard where it was
    int field;            ///< 1 to 3: where the keyboard is afterwards
    const char* kind_after;
  };
  const Case kCases[] = {
      {"", "x", "y", kNotANumber, 1, ""},
      {"101", "5%", "y", kNotANumber, 2, "101"},
      {"101", "5", "1.5", kNotANumber, 3, "101"},
      {"5", "5", "0", kNoKind, 1, "106"},
      {"1", "5", "0", kNoKind, 1, "102"},
      {"100,5", "5", "0", kNoKind, 1, "201"},  // a half goes to the even number
      {"0", "5", "0", kNoKind, 1, "0"},
      {"32768", "5", "0", nullptr, 2, "32768"},
      {"101", "32768", "0", nullptr, 2, "101"},
      {"101", "5", "2147483648", nullptr, 2, "101"},
  };
  Click(Tab().CmdVDk);
  const Texts before = AllRules();
  Click(Kinds().CmdNew);
  for (const Case& one : kCases) {
    SCOPED_TRACE(fmt::format("{}/{}/{}", one.kind, one.percentage, one.threshold));
    Kinds().Text2.SetFocus();
    Type(Kinds().Text1, one.kind);
    Type(Kinds().Text2, one.percentage);
    Type(Kinds().Text3, one.threshold);
    if (one.message == nullptr) desktop_.ExpectRuntimeError();
    if (one.message != nullptr) desktop_.Expect(one.message, BoxAnswer::kOk, BoxIcon::kCritical, "ZASTAVA");
    Click(Kinds().CmdOk);
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
  Click(Kinds().CmdOk);
  EXPECT_EQ(AllRules().back(), "4|32767|9|-2|2147483647");
}

TEST_F(Cards, ARuleThatLacksAValueIsNotTakenOut) {
  for (const char* column : {"CARD", "TOV", "PROZ", "TOTAL"}) {
    shop_.Sql("DELETE FROM TOTALSKID");
    shop_.Sql("INSERT INTO TOTALSKID (ID,CARD,TOV,PROZ,TOTAL) VALUES (1,101,0,3,0)");
    shop_.Sql(fmt::format("UPDATE TOTALSKID SET {}=NULL", column));
    Click(Tab().CmdVDk);
    desktop_.ExpectRuntimeError();
    Click(Kinds().CmdEdit);
    EXPECT_FALSE(Kinds().CmdOk.Enabled());
    EXPECT_EQ(AllRules().size(), 1U) << column;
    Do([&] { Kinds().Close(); });
  }
}

}  // namespace
}  // namespace zrt
