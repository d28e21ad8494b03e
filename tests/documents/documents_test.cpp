// The eight kinds of stock document, each from its first line to its place in the register.

#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "core/numbers.h"
#include "documents/documents_shop.h"

namespace zrt {
namespace {

using test::DocumentsTest;
using test::Texts;

/// A kind that was added halfway is told here: each has a window of its own, a place in the menu, a rule of the picker
/// if its window picks, a column in the report of movements if it moves stock, and says when a second one is asked for.
TEST_F(DocumentsTest, EveryKindIsWholeAndOpenOnce) {
  const std::pair<const char*, const char*> kRefusals[] = {
      {"существует открытый Дневной Отчёт!", "существует открытый Дневной Отчёт!"},
      {"существует открытая Приходная Накладная!", "существует открытая Приходная накладная!"},
      {"существует открытая Расходная Накладная!", "существует открытая Расходная накладная!"},
      {"существует открытый документ Списание!", "существует открытый документ Списание!"},
      {"существует открытый документ Инвентаризация!", "существует открытый документ Инвентаризация!"},
      {"существует открытый документ Переоценка!", "существует открытый документ Переоценка!"},
      {"существует открытое Перемещение Приход!", "существует открытый документ Перемещение Приход!"},
      {"существует открытое Перемещение Расход!", "существует открытый документ Перемещение Расход!"}};
  EXPECT_EQ(FindKind(kDocumentKinds.size()), nullptr);
  for (const DocumentKind& kind : kDocumentKinds) {
    SCOPED_TRACE(kind.form);
    EXPECT_EQ(kind.movement == Movement::kNone, kind.lines == LinesIn::kDocPrice);
    EXPECT_EQ(kind.sign > 0, kind.movement == Movement::kIncome);
    shop_.Sql(
        fmt::format("INSERT INTO JOURNAL (ID,DTYPE,DATEDOC,SUMM,KLIENT,PRIM,REZ) VALUES ({},'{}','2026-11-01 "
                    "00:00:00',0,'кто','что',0)",
                    100 + NumberOf(kind.type), kind.dtype));
    DocumentForm& form = Open(kind.type);
    EXPECT_EQ(Docs().FormOf(kind.dtype), &form);
    EXPECT_EQ(form.Caption(), kind.new_caption);
    EXPECT_EQ(form.LblRun.BackColor(), 255U);
    EXPECT_EQ(form.RUNButton.Enabled(), kind.type != DocType::kDailyReport);
    EXPECT_EQ(desktop_.Focused(), &form.DataGrid7);
    EXPECT_EQ(form.CmdTov.has_value(), kind.asks != Asks::kUnknown && kind.asks != Asks::kNothing);
    EXPECT_EQ(form.TextKlient.has_value(), kind.has_klient);
    EXPECT_EQ(form.TextPrim.has_value(), !kind.has_own_text);
    if (form.CmdTov) Pick(kind.type, 1, 1000, 1000);
    EXPECT_EQ(form.DataGrid7.Rows(), form.CmdTov ? 1 : 0);
    desktop_.Expect(kRefusals[NumberOf(kind.type)].first, BoxAnswer::kOk, BoxIcon::kNone);
    Open(kind.type);
  }
  // All eight side by side; the journal refuses each, but for the outgoing invoice it looks at the incoming one.
  for (const DocumentKind& kind : kDocumentKinds) {
    SCOPED_TRACE(kind.form);
    if (kind.type == DocType::kOutgoing) {
      Leave(Docs().Outgoing, BoxAnswer::kCancel);
      EXPECT_FALSE(Docs().Outgoing.DocOpen);
    }
    desktop_.Expect(kRefusals[NumberOf(kind.type)].second, BoxAnswer::kOk, BoxIcon::kNone);
    Reopen(100 + NumberOf(kind.type));
    desktop_.CheckAllCame();
  }
  for (const DocumentKind& kind : kDocumentKinds) {
    SCOPED_TRACE(kind.form);
    DocumentForm& form = Docs().Form(kind.type);
    if (form.DocOpen) Leave(form, BoxAnswer::kCancel);
    Reopen(100 + NumberOf(kind.type));
    EXPECT_EQ(form.Caption(), fmt::format("{}{} от 01.11.2026", kind.saved_caption, 100 + NumberOf(kind.type)));
    EXPECT_EQ(form.LblNumer.Caption(), std::to_string(100 + NumberOf(kind.type)));
    EXPECT_EQ(form.LblData.Caption(), "01.11.2026") << "midnight has no time";
    EXPECT_EQ((form.TextKlient ? form.TextKlient->Text() : "кто") + (form.TextPrim ? form.TextPrim->Text() : "что"),
              "кточто");
    desktop_.UserAction([&] { form.Close(); });
  }
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM JOURNAL"), "8") << "nothing was saved";
}

struct LineKind {
  DocType type;
  int sign;
  int offered;            ///< thousandths: the price that a scan offers, the purchase price being 80
  int price_of_zero;      ///< thousandths: what a line picked without a price gets
  bool posts_no_stock;    ///< products without stock enter the register
  bool updates_no_stock;  ///< and get a balance from it
};
constexpr LineKind kLineKinds[] = {{DocType::kIncoming, 1, 80000, 0, true, true},
                                   {DocType::kOutgoing, -1, 120500, 0, false, false},
                                   {DocType::kWriteOff, -1, 80000, 80000, true, true},
                                   {DocType::kTransferIn, 1, 80000, 80000, true, true},
                                   {DocType::kTransferOut, -1, 80000, 80000, true, true}};

TEST_F(DocumentsTest, ALineDocumentFromItsFirstLineToItsUnposting) {
  Receive(1, 100000, 80000, 1);
  shop_.Sql("INSERT INTO DOCUMENT (COD,NAME,KOL,PRISE,COST,TYP) VALUES (2,'Вино',1000,1000,1000,9)");
  int day = 2;
  int balance = 100000;
  for (const LineKind& one : kLineKinds) {
    const DocumentKind& kind = KindOf(one.type);
    SCOPED_TRACE(kind.form);
    Now(++day, 9);
    DocumentForm& form = Open(one.type);
    // A scan offers a price and asks the quantity; picked lines come as they are.
    desktop_.ExpectInput("отсканируйте Штрихкод", "4820000000017");
    desktop_.InModal([&](zrt::Form&) {
      EXPECT_EQ(app_->PickDialog.DialPrice, one.offered);
      EXPECT_EQ(app_->PickDialog.TextKol.Text(), "");
      Type(app_->PickDialog.TextKol, "2");
      Press(app_->PickDialog.TextKol, "Enter");
      if (app_->PickDialog.IsVisible()) Press(*desktop_.Focused(), "Enter");
    });
    Click(*form.CmdBar);
    Pick(one.type, 1, 1500, 0);
    Pick(one.type, 3, 3000, 10000);
    Pick(one.type, 4, 0, 4000);
    Pick(one.type, 4, -1000, 4000);
    Pick(one.type, 99, 1000, 1000);  // no such product: no line
    EXPECT_EQ(form.DataGrid7.Rows(), 5);
    const int sum = 2 * one.offered + 3 * one.price_of_zero / 2 + 30000 - 4000;
    EXPECT_EQ(form.DocSum, sum) << "lines without quantity count in the sum that is shown";
    Type(*form.TextPrim, "  " + std::string(60, 'x'));
    if (form.TextKlient) Type(*form.TextKlient, "ООО \"Ромашка\"  ");

    faults_.Forget();
    desktop_.Expect("Провести документ?", BoxAnswer::kCancel, BoxIcon::kQuestion);
    Click(form.RUNButton);
    EXPECT_EQ(form.LblInf.Caption(), "сохранение документа...");
    const int id = form.DocId;
    const std::string date = fmt::format("2026-11-{:02} 09:00:00", day);
    EXPECT_EQ(Head(id), fmt::format("{}|{}|{}|{}|{}|-|0", kind.dtype, date, sum,
                                    form.TextKlient ? "ООО \"Ромашка\"" : "", std::string(50, 'x')));
    const auto row = [&](int cod, int kol, int summ, int ost, bool run, bool rez) {
      return fmt::format("{} {} {} {} {} 0 {} {} {}", NumberOf(one.type), cod, kol * one.sign, summ * one.sign, ost,
                         date, run ? 1 : 0, rez ? 1 : 0);
    };
    const bool rez = !one.posts_no_stock;
    EXPECT_EQ(Register(id),
              (Texts{row(1, 2000, 2 * one.offered, 0, false, false),
                     row(1, 1500, 3 * one.price_of_zero / 2, 0, false, false), row(3, 3000, 30000, 0, false, rez)}));
    const std::string control = fmt::format("{}11090000", day % 10);
    EXPECT_TRUE(faults_.Statements()[0].ends_with("," + control + ",NULL,0)"));
    EXPECT_EQ(faults_.Statements()[1],
              fmt::format("SELECT ID, DATEDOC FROM JOURNAL WHERE DTYPE='{}' AND CNTRL={} AND SUMM={}", kind.dtype,
                          control, sum));
    EXPECT_EQ(faults_.Statements()[2], fmt::format("DELETE FROM REGISTR WHERE DOC={}", id));

    Click(form.CmdPlus);
    Post(form);
    balance += one.sign * 3500;
    EXPECT_FALSE(form.Month0.Visible());
    Pick(one.type, 2, 1000, 80000);
    EXPECT_EQ(form.DataGrid7.Rows(), 5) << "what is posted takes nothing from windows that stay open over it";
    EXPECT_EQ(Register(id), (Texts{row(1, 2000, 2 * one.offered, balance, true, false),
                                   row(1, 1500, 3 * one.price_of_zero / 2, balance, true, false),
                                   row(3, 3000, 30000, rez ? 0 : app_->Stock.GetOstNow(3), !rez, rez)}));
    EXPECT_EQ(form.LblRun.BackColor(), 65280U);
    for (Control* off : std::initializer_list<Control*>{&form.RUNButton, &*form.CmdTov, &*form.CmdBar, &*form.CmdVar,
                                                        &*form.CmdDel, &form.CmdPlus, &*form.TextPrim, &*form.mnuRun}) {
      EXPECT_FALSE(off->Enabled()) << off->Name();
    }
    // Posted lines can't be changed from the grid either.
    Press(form.DataGrid7, "Enter");

    shop_.Sql("UPDATE TOVAR SET OST=-77777");
    Click(*form.CmdUpd);
    EXPECT_EQ(shop_.Value("SELECT OST FROM TOVAR WHERE COD=1"), std::to_string(balance));
    EXPECT_EQ(shop_.Value("SELECT OST FROM TOVAR WHERE COD=3"),
              one.updates_no_stock ? std::to_string(app_->Stock.GetOstNow(3)) : "-77777");

    Click(*form.mnuRegistr);
    EXPECT_EQ(Docs().Movements.Caption(), "Движения документа: " + form.Caption());
    EXPECT_EQ(Docs().Movements.DataGrid8.Rows(), rez ? 2 : 3);
    EXPECT_EQ(Docs().Movements.DataGrid8.CellText(1, "Balance"),
              RegionalFormat{}.FormatFixed(balance / 1000.0, "0.000"));
    Press(Docs().Movements.DataGrid8, "Esc");
    EXPECT_FALSE(Docs().Movements.IsVisible());
    Leave(form, BoxAnswer::kOk);
    EXPECT_EQ(shop_.Column("SELECT TYP FROM DOCUMENT"), Texts{"9"}) << "the lines of other kinds stay";

    // Reopened: signs turned back, lines without quantity gone; unposted and changed; saved anew under its number.
    DocumentForm& again = Reopen(id);
    EXPECT_TRUE(again.DocRun);
    EXPECT_EQ(again.DataGrid7.Rows(), 3);
    EXPECT_EQ(again.DataGrid7.CellText(3, "Value"), "3,000");
    EXPECT_EQ(again.DocSum, sum + 4000);
    Unpost(again);
    balance -= one.sign * 3500;
    EXPECT_EQ(app_->Stock.GetOstNow(1), balance);
    EXPECT_EQ(shop_.Value(fmt::format("SELECT COUNT(*) FROM REGISTR WHERE DOC={} AND (RUN=1 OR OSTKOL<>0)", id)), "0");
    desktop_.UserAction([&] { again.DataGrid7.UserRow(3); });
    Click(*again.CmdDel);
    desktop_.UserAction([&] { again.DataGrid7.UserRow(1); });
    desktop_.InModal([&](zrt::Form&) {
      // The line is gone already: a change of mind loses it.
      EXPECT_EQ(again.DataGrid7.Rows(), 1);
      EXPECT_EQ(app_->PickDialog.DialCod, 1);
      Press(app_->PickDialog.TextKol, "Esc");
    });
    Press(again.DataGrid7, "Enter");
    desktop_.UserAction([&] { again.DataGrid7.UserRow(1); });
    desktop_.InModal([&](zrt::Form&) {
      Type(app_->PickDialog.TextKol, "10");
      Type(app_->PickDialog.TextPrice, "7");
      Click(app_->PickDialog.OKButton);
    });
    Click(*again.CmdVar);
    Leave(again, BoxAnswer::kOk);
    EXPECT_EQ(Register(id), Texts{row(1, 10000, 70000, 0, false, false)});
    EXPECT_EQ(Head(id).substr(0, Head(id).find("|", std::string(kind.dtype).size() + 22)),
              fmt::format("{}|{}|70000", kind.dtype, date));
  }
}

TEST_F(DocumentsTest, LinesThatAreEqualOrWithoutProductAreGoneWhenReopened) {
  shop_.Sql("UPDATE TOVAR SET ID=ID+10 WHERE COD=1");  // entered after the others
  Now(2);
  DocumentForm& form = Open(DocType::kIncoming);
  Pick(DocType::kIncoming, 2, 1000, 0);  // the lines come back by their codes
  Pick(DocType::kIncoming, 1, 1000, 80000);
  Pick(DocType::kIncoming, 1, 1000, 80000);
  EXPECT_EQ(form.DataGrid7.CellText(3, "Markup"), "50,6%");
  EXPECT_EQ(form.DataGrid7.CellText(1, "Markup"), "") << "no purchase price, no markup";
  EXPECT_EQ(form.DataGrid7.CellText(1, "Retail"), "950,00");
  Leave(form, BoxAnswer::kOk);
  const int id = LastDocument();
  shop_.Sql("UPDATE TOVAR SET PRISE=99900 WHERE COD=2");
  shop_.Sql("UPDATE TOVAR SET NAME=NULL WHERE COD=1");
  Reopen(id);
  EXPECT_EQ(form.DataGrid7.Rows(), 2);
  EXPECT_EQ(form.DataGrid7.CellText(1, "Name"), "-----! УДАЛЕННЫЙ ТОВАР !----");
  EXPECT_EQ(form.DataGrid7.CellText(2, "Retail"), "999,00") << "the catalogue's price of now";
  desktop_.UserAction([&] { form.Close(); });
  shop_.Sql("DELETE FROM TOVAR WHERE COD=2");
  Reopen(id);
  EXPECT_EQ(form.DataGrid7.Rows(), 1);
  Leave(form, BoxAnswer::kOk);
  EXPECT_EQ(Register(id).size(), 1U);
}

TEST_F(DocumentsTest, ClientAndNoteAreTypedLast) {
  DocumentForm& form = Open(DocType::kIncoming);
  Pick(DocType::kIncoming, 1, 1000, 100000);
  Type(*form.TextPrim, "важно");
  ComeBack(form);
  EXPECT_EQ(form.TextPrim->Text(), "") << "coming back brings back what was there before";
  EXPECT_EQ(form.DataGrid7.Rows(), 1);
  // The date: the day picked at the present time.
  Now(12, 17);
  Click(form.CmdPlus);
  EXPECT_TRUE(form.Month0.Visible() && desktop_.Focused() == &form.Month0);
  desktop_.UserAction([&] { form.Month0.UserPick({2026, 10, 31}); });
  EXPECT_EQ(form.LblData.Caption(), "31.10.2026 17:00:00");
  EXPECT_FALSE(form.Month0.Visible());
  Type(*form.TextPrim, "важно");
  Type(*form.TextKlient, "ООО");
  Leave(form, BoxAnswer::kOk);
  EXPECT_EQ(shop_.Value("SELECT CONCAT(DATEDOC,PRIM,KLIENT) FROM JOURNAL"), "2026-10-31 17:00:00важноООО");
  Open(DocType::kIncoming);
  EXPECT_EQ(form.TextPrim->Text() + form.TextKlient->Text(), "") << "a new document has nothing of the last one";
}

TEST_F(DocumentsTest, AnInventoryBringsTheRegisterToTheCount) {
  Receive(1, 10000, 80000, 1);
  Receive(2, 5000, 700000, 1);
  Receive(4, 3000, 30000, 1);
  shop_.Sql("UPDATE TOVAR SET N2=12 WHERE COD=4");
  clock_.Set({{2026, 11, 5}, 12, 34, 56});
  auto& form = static_cast<frmDocIN&>(Open(DocType::kInventory));
  const auto lines = [&] { return Lines(form, {"Name", "Balance", "Actual"}); };
  EXPECT_EQ(form.ComboLoc.Items(), (Texts{"", "Бар", "Кухня1", "Кухня2", "Кухня3"}));
  const std::pair<const char*, Texts> kPlaces[] = {{"Бар", {"Чай 10,000 10,000"}},
                                                   {"Кухня1", {"Вино 5,000 5,000", "Вода 3,000 3,000"}},
                                                   {"Кухня2", {}},  // there is only a product without balance
                                                   {"", {"Чай 10,000 10,000", "Вино 5,000 5,000", "Вода 3,000 3,000"}}};
  Pick(DocType::kInventory, 2, 1000, 0);
  EXPECT_EQ(lines(), Texts{"Вино 5,000 1,000"});
  for (const auto& [place, found] : kPlaces) {
    Click(form.CmdClear);
    EXPECT_TRUE(lines().empty());
    Type(form.ComboLoc, place);
    Click(form.CmdDat);
    EXPECT_EQ(lines(), found) << place;
    EXPECT_EQ(form.LblInf.Caption(), "");
  }
  desktop_.Expect("Товар Вино уже выбран в документе!!! ", BoxAnswer::kOk, BoxIcon::kCritical);
  Pick(DocType::kInventory, 2, 1000, 0);

  const auto count = [&](int row, const std::string& prompt, const std::string& answer) {
    desktop_.UserAction([&] { form.DataGrid7.UserRow(row); });
    desktop_.ExpectInput(prompt, answer);
    Press(form.DataGrid7, "Enter");
    EXPECT_EQ(form.DataGrid7.Row(), row) << "the list stays where it was";
  };
  count(1, "Чай\r\rучётный остаток = 10,000", "8,5");
  count(2, "Вино\r\rучётный остаток = 5,000", "5,5");  // half a unit: shown, summed, and not registered
  count(3, "Вода\r\rучётный остаток = 3,000", "");
  desktop_.ExpectInput("Вода\r\rучётный остаток = 3,000", "1.5");
  desktop_.Expect("введите числовое значение!", BoxAnswer::kOk, BoxIcon::kCritical);
  Click(*form.CmdVar);
  EXPECT_EQ(form.LblSum.value().Caption(), "230,00");  // -1,5*80 + 0,5*700
  EXPECT_EQ(form.LblSumR.Caption(), "294,25");         // -1,5*120,50 + 0,5*950
  EXPECT_EQ(form.LblOst.Caption(), "4\u00A0620,00");   // 8,5*80 + 5,5*700 + 3*30
  EXPECT_EQ(form.LblOstR.Caption(), "6\u00A0369,25");  // 8,5*120,50 + 5,5*950 + 3*40
  Type(*form.TextPrim, std::string(30, 'z'));

  Click(form.CmdPlus);
  desktop_.Expect("Поместить документ в конец дня (23:59)?", BoxAnswer::kOk, BoxIcon::kQuestion);
  Post(form);
  EXPECT_FALSE(form.Month0.Visible());
  Pick(DocType::kInventory, 3, 1000, 0);
  EXPECT_EQ(form.DataGrid7.Rows(), 3);
  const int id = form.DocId;
  EXPECT_EQ(Head(id),
            "ИНВЕНТАРИЗАЦИЯ|2026-11-05 23:59:00|294250||сформ 05.11.2026 12:34:56 " + std::string(24, 'z') + "|OK|0");
  EXPECT_EQ(Register(id), Texts{"4 1 -1500 -120000 8500 0 2026-11-05 23:59:00 1 0"});
  EXPECT_EQ(shop_.Value(fmt::format("SELECT COUNT(*) FROM DOCINVENT WHERE DOC={}", id)), "3");
  for (const Button* off : {&form.CmdDat, &form.CmdClear, &form.CmdClearFakt, &form.CmdDownlFakt}) {
    EXPECT_FALSE(off->Enabled()) << off->Name();
  }
  Leave(form, BoxAnswer::kOk);

  // Reopened it is read from its own lines; a saved one can still be counted.
  Reopen(id);
  EXPECT_EQ(lines(), (Texts{"Чай 10,000 8,500", "Вино 5,000 5,500", "Вода 3,000 3,000"}));
  EXPECT_EQ(form.LblSumR.Caption(), "294,25");
  Unpost(form);
  count(2, "Вино\r\rучётный остаток = 5,000", "6,5");
  Post(form);
  EXPECT_EQ(Register(id).size(), 2U);
  EXPECT_EQ(app_->Stock.GetOstNow(2), 6500);
  Leave(form, BoxAnswer::kOk);

  // A new one left without saving leaves nothing; zero counts for all lines.
  Open(DocType::kInventory);
  Click(form.CmdDat);
  Click(form.CmdClearFakt);
  EXPECT_EQ(lines(), (Texts{"Чай 8,500 0,000", "Вино 6,500 0,000", "Вода 3,000 0,000"}));
  Leave(form, BoxAnswer::kCancel);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM DOCINVENT WHERE DOC=-1"), "0");
}

TEST_F(DocumentsTest, APriceChangeIsForGood) {
  auto& form = Open(DocType::kPriceChange);
  Pick(DocType::kPriceChange, 1, 0, 99999);  // thousandths that hundredths can't hold
  Pick(DocType::kPriceChange, 2, 0, 0);      // no price: no change
  Pick(DocType::kPriceChange, 4, 0, 5000);
  Pick(DocType::kPriceChange, 4, 0, 7000);    // twice in a row: the first counts
  Pick(DocType::kPriceChange, 1, 0, 130000);  // twice apart: the last does
  desktop_.UserAction([&] { form.DataGrid7.UserRow(2); });
  desktop_.ExpectInput("Вино\r\rстарая цена = 950,00", "1,015");
  Click(*form.CmdVar);
  desktop_.ExpectInput("Вино\r\rстарая цена = 950,00", "дорого");
  desktop_.Expect("введите числовое значение!", BoxAnswer::kOk, BoxIcon::kCritical);
  Click(*form.CmdVar);
  EXPECT_EQ(form.DataGrid7.CurrentText("NewPrice"), "1,02");
  Type(*form.TextPrim, std::string(30, 'n'));
  Click(form.CmdPlus);
  Post(form);
  EXPECT_FALSE(form.Month0.Visible());
  Pick(DocType::kPriceChange, 3, 0, 5000);
  EXPECT_EQ(form.DataGrid7.Rows(), 5);
  EXPECT_EQ(shop_.Column("SELECT CONCAT(COD,' ',PRISE) FROM TOVAR ORDER BY COD"),
            (Texts{"1 13000", "2 102", "3 10000", "4 500"}));
  EXPECT_TRUE(faults_.Statements().back().starts_with("UPDATE JOURNAL SET RUN='OK'")) << "when all prices are in force";
  EXPECT_EQ(Head(form.DocId), "Переоценка|2026-11-12 12:00:00|0||" + std::string(24, 'n') + "|OK|0");
  EXPECT_FALSE(form.RUNButton.Enabled());
  const int id = form.DocId;
  Leave(form, BoxAnswer::kOk);
  Reopen(id);
  EXPECT_EQ(form.DataGrid7.CellText(2, "OldPrice"), "950,00");
  Leave(form, BoxAnswer::kOk);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM REGISTR"), "0");
}

TEST_F(DocumentsTest, ADailyReportClosesTheShift) {
  Sell(
      "(1,'Чай',2000,120500,241000,0,'2026-11-11 08:00:00',1,1),"
      "(1,'Чай',1000,120500,120500,0,'2026-11-12 07:59:58',1,2),"
      "(1,'Чай',1000,120500,108450,7,'2026-11-11 12:00:00',1,3),"  // on a card, discounted
      "(2,'Вино',500,950000,475000,0,'2026-11-11 13:00:00',1,4),"
      "(3,'Доставка',1000,100000,100000,0,'2026-11-11 13:00:00',1,5),"
      "(4,'Вода',-1000,40000,-40000,0,'2026-11-11 13:00:00',1,6),"  // more returned than sold
      "(4,'Вода',1000,40000,40000,0,'2026-11-12 07:59:59',1,7),"    // the shift's last second isn't taken
      "(4,'Вода',1000,40000,40000,0,'2026-11-11 07:59:59',1,8),"
      "(4,'Вода',9000,40000,40000,0,'2026-11-12 08:00:00',1,9)");  // the next shift's
  Receive(1, 10000, 80000, 1);
  Now(12);
  auto& form = static_cast<frmDocDO&>(Open(DocType::kDailyReport));
  EXPECT_EQ(form.TextDate.Caption(), "11.11.2026") << "prepared for yesterday";
  EXPECT_EQ(form.Combo1.Text(), "8");
  EXPECT_FALSE(form.RUNButton.Enabled() || form.mnuRun->Enabled());
  Click(form.CmdDat);
  Texts lines = Lines(form, {"Cod", "Value", "Price", "Summ", "Card"});
  std::sort(lines.begin(), lines.end());
  EXPECT_EQ(lines, (Texts{"1 1,000 108,45 108,45 7", "1 3,000 120,50 361,50 0", "2 0,500 950,00 475,00 0",
                          "3 1,000 100,00 100,00 0", "4 -1,000 40,00 -40,00 0"}));
  EXPECT_EQ(form.LblSum.value().Caption(), "1\u00A0004,95");
  EXPECT_TRUE(form.RUNButton.Enabled() && form.mnuRun->Enabled());

  Post(form);
  EXPECT_FALSE(form.CmdDat.IsUsable());  // what is posted isn't gathered anew
  const int id = form.DocId;
  EXPECT_EQ(Head(id),
            "Дневной Отчёт|2026-11-11 23:00:00|1004950||Закрытие продаж 12.11.2026 12:00:00 за 11.11.2026|OK|0");
  Texts rows = Register(id);
  std::sort(rows.begin(), rows.end());
  EXPECT_EQ(
      rows,
      (Texts{"0 1 -1000 -108450 6000 7 2026-11-11 23:00:00 1 0", "0 1 -3000 -361500 6000 0 2026-11-11 23:00:00 1 0",
             "0 2 -500 -475000 -500 0 2026-11-11 23:00:00 1 0", "0 3 -1000 -100000 0 0 2026-11-11 23:00:00 0 1"}));
  Click(*form.CmdUpd);
  EXPECT_EQ(shop_.Column("SELECT CONCAT(COD,' ',OST,' ',KOL) FROM TOVAR ORDER BY COD"),
            (Texts{"1 6000 4000", "2 -500 500", "3 0 0", "4 0 0"}));

  // From the journal the report knows its lines but no shift.
  Leave(form, BoxAnswer::kOk);
  Reopen(id);
  EXPECT_FALSE(form.FrameNew.Enabled());
  Click(*form.CmdUpd);
  EXPECT_EQ(shop_.Value("SELECT SUM(KOL) FROM TOVAR"), "0");
  faults_.Forget();
  desktop_.Expect("Отменить проведение документа?", BoxAnswer::kOk);
  // To the server every document is later than this.
  desktop_.Expect("Документ проведён 'задним числом'!\n\rперепровести последующие за ним 1 документов?",
                  BoxAnswer::kCancel);
  Click(*form.mnuUnRun);
  EXPECT_EQ(form.LblInf.Caption(), "");
  EXPECT_TRUE(faults_.Statements().back().find("DATEDOC >= '-- 23:00:00'") != std::string::npos);
  Leave(form, BoxAnswer::kCancel);

  // Another day: hour 0 ends on the same day. Coming back to a new one begins it again.
  Open(DocType::kDailyReport);
  Type(form.Combo1, "0");
  EXPECT_EQ(shop_.Value("SELECT N8 FROM CONST WHERE COD=5"), "0");
  faults_.Forget();
  Click(form.CmdDat);
  EXPECT_TRUE(faults_.Statements()[2].find("DATETIME >= '2026-11-11 00:00:00' AND DATETIME < '2026-11-11 23:59:59'") !=
              std::string::npos)
      << faults_.Statements()[2];
  Click(form.CmdPlus);
  desktop_.UserAction([&] { form.Month0.UserPick({2026, 10, 1}); });
  EXPECT_EQ(desktop_.Focused(), &form.CmdDat);
  ComeBack(form);
  EXPECT_EQ(form.TextDate.Caption(), "11.11.2026");
  EXPECT_FALSE(form.RUNButton.Enabled());
  EXPECT_EQ(form.Combo1.Items().size(), 48U);

  // Gathered for a day, then another day without sales: nothing of the first may be posted.
  Click(form.CmdDat);
  EXPECT_TRUE(form.RUNButton.Enabled());
  desktop_.UserAction([&] {
    form.Month0.Visible = true;
    form.Month0.UserPick({2026, 10, 1});
  });
  desktop_.Expect("Нет продаж!", BoxAnswer::kOk, BoxIcon::kCritical);
  Click(form.CmdDat);
  EXPECT_FALSE(form.RUNButton.Enabled() || form.mnuRun->Enabled());
  EXPECT_EQ(form.DataGrid7.Rows(), 0);
  EXPECT_EQ(form.LblSum->Caption(), "");
  shop_.Sql("INSERT INTO JOURNAL (DTYPE,DATEDOC,RUN) VALUES ('Дневной Отчёт','2026-10-01 23:00:00','1')");
  desktop_.Expect("Существует проведённый Дневной Отчёт за 01.10.2026!", BoxAnswer::kOk, BoxIcon::kCritical);
  Click(form.CmdDat);
}

}  // namespace
}  // namespace zrt
