// Documents whose server fails on the way: what is saved by then, what is lost on purpose, what mends it.

#include <fmt/format.h>

#include <string>

#include "documents/documents_shop.h"

namespace zrt {
namespace {

using test::DocumentsTest;
using test::Texts;

TEST_F(DocumentsTest, WhereverAPostingBreaksOffTheNextPressPostsWhatStandsInTheWindow) {
  Now(2);
  DocumentForm& form = Open(DocType::kOutgoing);
  Pick(DocType::kOutgoing, 1, 1000, 100000);
  Pick(DocType::kOutgoing, 2, 2000, 100000);
  Type(*form.TextKlient, "д'Артаньян");
  desktop_.ExpectRuntimeError();
  Click(form.RUNButton);
  EXPECT_EQ(form.DocId, -1);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM JOURNAL"), "0");
  Type(*form.TextKlient, "Портос");
  Post(form);
  // Head, journal's mark, old rows, each line's N6 and row; then codes, links, rows, journal, two balances, later ones.
  constexpr int kSaving = 7, kAll = 17;
  for (int statement = 1; statement <= kAll; ++statement) {
    SCOPED_TRACE(statement);
    Unpost(form);
    faults_.FailAt(statement);
    if (statement > kSaving) desktop_.Expect("Провести документ?", BoxAnswer::kOk);
    desktop_.ExpectRuntimeError();
    Click(form.RUNButton);
    desktop_.CheckAllCame();
    EXPECT_EQ(form.LblRun.BackColor(), 255U);
    EXPECT_TRUE(form.RUNButton.Enabled() && !form.CmdUpd->Enabled()) << "nothing of it goes to the terminals";
    if (statement % 2 == 0) {
      // Left with a save alone, the document is as unposted in the journal as its rows are.
      Leave(form, BoxAnswer::kOk);
      EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM JOURNAL WHERE RUN IS NOT NULL"), "0");
      Reopen(std::stoi(shop_.Value("SELECT MAX(ID) FROM JOURNAL")));
    }
    const int kol = 1000 * (statement + 2);
    desktop_.UserAction([&] { form.DataGrid7.UserRow(2); });
    desktop_.InModal([&](zrt::Form&) {
      Type(app_->PickDialog.TextKol, std::to_string(kol / 1000));
      Click(app_->PickDialog.OKButton);
    });
    Click(*form.CmdVar);
    Post(form);
    EXPECT_EQ(form.LblRun.BackColor(), 65280U);
    ASSERT_EQ(shop_.Column("SELECT CONCAT(COD,' ',KOL,' ',OSTKOL,' ',RUN) FROM REGISTR ORDER BY COD"),
              (Texts{"1 -1000 -1000 1", fmt::format("2 -{} -{} 1", kol, kol)}));
    EXPECT_EQ(shop_.Column("SELECT CONCAT(SUMM,RUN,KLIENT) FROM JOURNAL"),
              Texts{fmt::format("{}OKПортос", 100000 + 100 * kol)});
  }
  // Half taken out is not posted either: the lamp says so, and posting mends it.
  for (int statement = 1; statement <= 5; ++statement) {
    SCOPED_TRACE(statement);
    faults_.FailAt(statement);
    desktop_.ExpectRuntimeError();
    Unpost(form);
    desktop_.CheckAllCame();
    EXPECT_EQ(form.LblRun.BackColor(), 255U);
    EXPECT_FALSE(form.CmdUpd->Enabled());
    Post(form);
    EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM REGISTR WHERE RUN=1 AND OSTKOL<>0"), "2");
  }
}

/// A head that was written and whose number never came isn't written twice; what is saved is what stands in the window
/// when it is pressed again, in each kind's own form.
TEST_F(DocumentsTest, AHeadWhoseNumberNeverCame) {
  shop_.Sql(
      "INSERT INTO PROD (COD,NAME,KOL,PRISE,SUM2,REZ,DATETIME,TER,NUM) VALUES "
      "(1,'Чай',2000,120500,241000,0,'2026-11-10 09:00:00',1,1),(1,'Чай',1000,120500,120500,0,'2026-11-11 "
      "09:00:00',1,2)");
  Now(12);
  auto& report = static_cast<frmDocDO&>(Open(DocType::kDailyReport));
  Click(report.CmdDat);
  faults_.FailAt(2);
  desktop_.ExpectRuntimeError();
  Click(report.RUNButton);
  desktop_.UserAction([&] {
    report.Month0.Visible = true;
    report.Month0.UserPick({2026, 11, 10});
  });
  Click(report.CmdDat);
  Now(12, 13);
  Post(report);
  EXPECT_EQ(Head(report.DocId),
            "Дневной Отчёт|2026-11-10 23:00:00|241000||Закрытие продаж 12.11.2026 13:00:00 за 10.11.2026|OK|0");
  EXPECT_EQ(Register(report.DocId), Texts{"0 1 -2000 -241000 -2000 0 2026-11-10 23:00:00 1 0"});
  Leave(report, BoxAnswer::kOk);

  DocumentForm& count = Open(DocType::kInventory);
  Pick(DocType::kInventory, 2, 3000, 0);
  Type(*count.TextPrim, std::string(30, 'z'));
  desktop_.Expect("Поместить документ в конец дня (23:59)?", BoxAnswer::kCancel);
  faults_.FailAt(2);
  desktop_.ExpectRuntimeError();
  Click(count.RUNButton);
  Pick(DocType::kInventory, 4, 1000, 0);
  Type(*count.TextPrim, std::string(30, 'y'));
  Now(12, 14);
  // The head comes in, the lines don't follow; they are worked on where they stand until the next press.
  faults_.FailAt(4);
  desktop_.ExpectRuntimeError();
  Click(count.RUNButton);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM DOCINVENT WHERE DOC=-1"), "2");
  desktop_.ExpectInput("Вода\r\rучётный остаток = 0,000", "5");
  Click(*count.CmdVar);
  Pick(DocType::kInventory, 3, 2000, 0);
  Click(*count.CmdDel);
  Type(*count.TextPrim, "y");
  Post(count);
  EXPECT_EQ(Head(count.DocId), "ИНВЕНТАРИЗАЦИЯ|2026-11-12 13:00:00|3050000||y|OK|0");
  EXPECT_EQ(Register(count.DocId).size(), 2U);
  EXPECT_EQ(shop_.Column(fmt::format("SELECT KOL FROM DOCINVENT WHERE DOC={} ORDER BY ID", count.DocId)),
            (Texts{"3000", "5000"}));
  Leave(count, BoxAnswer::kOk);

  DocumentForm& prices = Open(DocType::kPriceChange);
  Pick(DocType::kPriceChange, 1, 0, 130000);
  Type(*prices.TextPrim, std::string(30, 'n'));
  faults_.FailAt(2);
  desktop_.ExpectRuntimeError();
  Click(prices.RUNButton);
  Post(prices);
  EXPECT_EQ(Head(prices.DocId), "Переоценка|2026-11-12 14:00:00|0||" + std::string(24, 'n') + "|OK|0");
  EXPECT_EQ(shop_.Value("SELECT PRISE FROM TOVAR WHERE COD=1"), "13000");

  DocumentForm& invoice = Open(DocType::kIncoming);
  Pick(DocType::kIncoming, 4, 1000, 10000);
  faults_.FailAt(2);
  desktop_.ExpectRuntimeError();
  Click(invoice.RUNButton);
  Pick(DocType::kIncoming, 4, 1000, 10000);
  Leave(invoice, BoxAnswer::kOk);
  EXPECT_EQ(shop_.Value("SELECT GROUP_CONCAT(SUMM) FROM JOURNAL WHERE DTYPE='Приходная накладная'"), "20000");

  Now(12, 16);
  // One that isn't found again; and one deleted under its open form, which lives on with what it has.
  DocumentForm& write_off = Open(DocType::kWriteOff);
  Click(write_off.RUNButton);
  Pick(DocType::kWriteOff, 1, 1000, 5000);
  shop_.Sql("CREATE TRIGGER LOSE BEFORE INSERT ON JOURNAL FOR EACH ROW SET NEW.CNTRL=0");
  desktop_.Expect("ОШИБКА записи документа", BoxAnswer::kOk, BoxIcon::kCritical);
  Click(write_off.RUNButton);
  EXPECT_EQ(write_off.DocId, -1);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM REGISTR WHERE DOCTYP=3"), "0");
  shop_.Sql("DROP TRIGGER LOSE");
  Post(write_off);
  Unpost(write_off);
  shop_.Sql("DELETE FROM JOURNAL");
  Leave(write_off, BoxAnswer::kOk);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM REGISTR WHERE DOCTYP=3"), "1");
}

/// Wherever the opening of a document breaks off: what the journal says of it stays, however it is left, and nothing of
/// it is left to the next document.
TEST_F(DocumentsTest, AnOpeningThatFailsLeavesNothingBehind) {
  DocumentForm& form = Open(DocType::kIncoming);
  Pick(DocType::kIncoming, 1, 1000, 80000);
  Pick(DocType::kIncoming, 2, 2000, 40000);
  Type(*form.TextKlient, "Портос");
  Type(*form.TextPrim, "важно");
  Leave(form, BoxAnswer::kOk);
  const int id = std::stoi(shop_.Value("SELECT MAX(ID) FROM JOURNAL"));
  const std::string head = Head(id);
  ASSERT_NE(head.find("Портос|важно"), std::string::npos);
  const Texts rows = Register(id);
  for (int statement = 2; statement <= 7; ++statement) {  // the first one is the journal's
    SCOPED_TRACE(statement);
    faults_.FailAt(statement);
    desktop_.ExpectRuntimeError();
    Reopen(id);
    if (statement % 2 == 0) {
      // Pressed all the same, it reads the document first.
      desktop_.Expect("Провести документ?", BoxAnswer::kCancel);
      Click(form.RUNButton);
      Leave(form, BoxAnswer::kOk);
    } else if (form.DocOpen) {
      Leave(form, BoxAnswer::kOk);
    } else {
      // Another one in its place.
      Now(20);
      Open(DocType::kIncoming);
      EXPECT_EQ(form.LblNumer.Caption() + form.LblData.Caption() + form.TextKlient->Text(), "");
      EXPECT_EQ(form.DataGrid7.Rows(), 0);
      Pick(DocType::kIncoming, 4, 1000, 1000);
      Leave(form, BoxAnswer::kOk);
      EXPECT_EQ(shop_.Value("SELECT MAX(DATEDOC) FROM JOURNAL"), "2026-11-20 12:00:00");
    }
    EXPECT_EQ(Head(id), head);
    EXPECT_EQ(Register(id), rows);
  }

  // Lines, or their sum alone, that couldn't be read after one was added are read before anything else.
  for (const int statement : {3, 4}) {  // the product, its line, the lines, the sum
    Reopen(id);
    desktop_.ExpectRuntimeError();
    faults_.FailAt(statement);
    Pick(DocType::kIncoming, 4, 1000, 10000);
    EXPECT_EQ(form.DataGrid7.Rows(), 0);
    Click(*form.CmdDel);
    EXPECT_EQ(form.DataGrid7.Rows(), 2) << "the last one is the current one, and it goes";
    Pick(DocType::kIncoming, 4, 1000, 10000);
    Click(*form.CmdDel);
    Leave(form, BoxAnswer::kOk);
    EXPECT_EQ(Head(id), head);
    EXPECT_EQ(Register(id), rows);
  }
}

TEST_F(DocumentsTest, AnOpenOutgoingInvoiceIsLeftForAnother) {
  DocumentForm& form = Open(DocType::kOutgoing);
  Pick(DocType::kOutgoing, 1, 1000, 100000);
  Leave(form, BoxAnswer::kOk);
  const int first = std::stoi(shop_.Value("SELECT MAX(ID) FROM JOURNAL"));
  const Texts rows = Register(first);
  Open(DocType::kOutgoing);
  Pick(DocType::kOutgoing, 2, 1000, 100000);
  Pick(DocType::kOutgoing, 4, 1000, 100000);
  Type(*form.TextKlient, "Атос");
  desktop_.Expect("Сохранить документ?", BoxAnswer::kOk, BoxIcon::kQuestion);
  Reopen(first);
  EXPECT_EQ(form.DataGrid7.Rows(), 1);
  EXPECT_EQ(form.DocId, first);
  const int second = std::stoi(shop_.Value("SELECT MAX(ID) FROM JOURNAL"));
  ASSERT_NE(first, second);
  EXPECT_EQ(Register(second).size(), 2U);
  EXPECT_NE(Head(second).find("Атос"), std::string::npos);
  desktop_.Expect("Сохранить документ?", BoxAnswer::kCancel);
  Reopen(second);
  EXPECT_EQ(form.DataGrid7.Rows(), 2);
  // The same one again has what was saved of it; posted, it is left without a question.
  Type(*form.TextKlient, "Арамис");
  desktop_.Expect("Сохранить документ?", BoxAnswer::kOk);
  Reopen(second);
  EXPECT_EQ(form.TextKlient->Text(), "Арамис");
  Post(form);
  Reopen(first);
  EXPECT_EQ(form.LblRun.BackColor(), 255U);
  EXPECT_EQ(Register(first), rows);
  // What can't be saved stays.
  Type(*form.TextKlient, "д'Артаньян");
  desktop_.Expect("Сохранить документ?", BoxAnswer::kOk);
  desktop_.ExpectRuntimeError();
  Reopen(second);
  EXPECT_EQ(form.DocId, first);
}

TEST_F(DocumentsTest, SumsThatTheTablesCantHoldAreRefusedBeforeTheLineGoesIn) {
  const auto refused = [this](const char* what) {
    desktop_.Expect(fmt::format("Сумма больше 2\u00A0147\u00A0483,64: в документ она не помещается!\n\r{}", what),
                    BoxAnswer::kOk, BoxIcon::kCritical);
  };
  DocumentForm& form = Open(DocType::kIncoming);
  Pick(DocType::kIncoming, 1, 1000000, 1500000);
  refused("Строка НЕ добавлена.");
  Pick(DocType::kIncoming, 2, 1000000, 1500000);
  refused("Строка НЕ добавлена.");
  Pick(DocType::kIncoming, 2, 2000000000, 2000000000);
  EXPECT_EQ(form.DataGrid7.Rows(), 1);
  EXPECT_EQ(form.LblSum->Caption(), "1\u00A0500\u00A0000,00");
  // Lines from elsewhere are shown for what they are, and nothing is lost by closing.
  shop_.Sql("INSERT INTO DOCUMENT (COD,NAME,KOL,PRISE,COST,TYP) VALUES (2,'Вино',1000,0,1500000000,1)");
  desktop_.UserAction([&] { desktop_.Activated(app_->Main); });
  desktop_.UserAction([&] { desktop_.Activated(form); });
  EXPECT_EQ(form.LblSum->Caption(), "3\u00A0000\u00A0000,00");
  desktop_.Expect("Сохранить документ?", BoxAnswer::kOk);
  refused("Документ НЕ сохранён.");
  Click(form.CancelButton);
  Click(*form.CmdDel);
  Leave(form, BoxAnswer::kOk);
  EXPECT_EQ(shop_.Value("SELECT SUMM FROM JOURNAL"), "1500000000");

  // A count worth more than that is posted; a difference worth more isn't.
  Receive(1, 20000000, 100, 1);
  Now(2);
  DocumentForm& count = Open(DocType::kInventory);
  Click(static_cast<frmDocIN&>(count).CmdDat);
  EXPECT_EQ(static_cast<frmDocIN&>(count).LblOstR.Caption(), "2\u00A0410\u00A0000,00");
  desktop_.ExpectInput("Чай\r\rучётный остаток = 20000,000", "2");
  refused("Количество НЕ изменено.");
  Click(*count.CmdVar);
  desktop_.Expect("Поместить документ в конец дня (23:59)?", BoxAnswer::kCancel);
  Post(count);
  Leave(count, BoxAnswer::kOk);

  // So is a shift that sold more.
  shop_.Sql(
      "INSERT INTO PROD (COD,NAME,KOL,PRISE,SUM2,REZ,DATETIME,TER,NUM) VALUES "
      "(1,'Чай',1000,0,1500000000,0,'2026-11-11 09:00:00',1,1),(2,'Вино',1000,0,1500000000,0,'2026-11-11 "
      "09:00:00',1,2)");
  Now(12);
  auto& report = static_cast<frmDocDO&>(Open(DocType::kDailyReport));
  refused("Продажи НЕ выбраны.");
  Click(report.CmdDat);
  EXPECT_EQ(report.DataGrid7.Rows(), 0);
  EXPECT_FALSE(report.RUNButton.Enabled());
}

TEST_F(DocumentsTest, APostedDocumentTakesNothingFromWhatStaysOpenOverIt) {
  for (const DocType type : {DocType::kIncoming, DocType::kInventory, DocType::kPriceChange}) {
    SCOPED_TRACE(KindOf(type).form);
    Now(5 + NumberOf(type), 12);
    DocumentForm& form = Open(type);
    Pick(type, 1, 1000, 80000);
    Click(form.CmdPlus);
    EXPECT_TRUE(form.Month0.Visible());
    if (type == DocType::kInventory) desktop_.Expect("Поместить документ в конец дня (23:59)?", BoxAnswer::kCancel);
    Post(form);
    EXPECT_FALSE(form.Month0.Visible());
    const int rows = form.DataGrid7.Rows();
    Pick(type, 2, 1000, 80000);
    EXPECT_EQ(form.DataGrid7.Rows(), rows);
    Leave(form, BoxAnswer::kOk);
  }
  // After a scan a new document stands on its new line.
  DocumentForm& invoice = Open(DocType::kOutgoing);
  Pick(DocType::kOutgoing, 2, 1000, 1000);
  desktop_.ExpectInput("отсканируйте Штрихкод", "4820000000024");
  desktop_.InModal([&](zrt::Form&) {
    Type(app_->PickDialog.TextKol, "1");
    Click(app_->PickDialog.OKButton);
  });
  Click(*invoice.CmdBar);
  EXPECT_EQ(invoice.DataGrid7.Row(), 2);
  desktop_.ExpectInput("отсканируйте Штрихкод", "111");
  desktop_.Expect("НЕТ ТАКОГО ШТРИХКОДА В БАЗЕ ДАННЫХ!", BoxAnswer::kOk, BoxIcon::kExclamation);
  Click(*invoice.CmdBar);
}

}  // namespace
}  // namespace zrt
