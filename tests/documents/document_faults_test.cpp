// Documents in unusual ways: what an operator does after a failure that isn't the same once more, heads that get lost,
// openings that fail, others opened in their place, sums too large.

#include <fmt/format.h>

#include <string>

#include "documents/documents_shop.h"

namespace zrt {
namespace {

using test::DocumentsTest;
using test::Texts;

TEST_F(DocumentsTest, WhatAnOperatorDoesAfterAFailure) {
  Receive(1, 10000, 80000, 1);
  Receive(2, 5000, 700000, 1);
  Now(2);
  // A count whose lines moved without an answer: lines added before the next press are under its number too.
  auto& count = static_cast<frmDocIN&>(Open(DocType::kInventory));
  Pick(DocType::kInventory, 1, 9000, 0);
  desktop_.Expect("Поместить документ в конец дня (23:59)?", BoxAnswer::kCancel);
  faults_.LoseAnswerAt(3);
  Fails(count.RUNButton);
  EXPECT_TRUE(count.CmdClear.Enabled());
  Click(count.CmdClear);  // empties new documents alone
  EXPECT_FALSE(count.CmdClear.Enabled());
  Pick(DocType::kInventory, 2, 4000, 0);
  // A change that is in although its answer was lost, whoever opens the link again.
  const auto lose_answer = [&](const char* actual) {
    desktop_.ExpectInput("Вино\r\rучётный остаток = 5,000", actual);
    faults_.LoseAnswerAt(1);
    Fails(*count.CmdVar);
  };
  for (const bool others_read : {false, true}) {
    lose_answer(others_read ? "3" : "2");
    if (others_read) desktop_.UserAction([this] { app_->Main.Journal.Refresh(); });
    desktop_.ExpectInput("Вино\r\rучётный остаток = 5,000", "");
    Click(*count.CmdVar);
    EXPECT_EQ(count.DataGrid7.CellText(2, "Actual"), others_read ? "3,000" : "2,000");
  }
  lose_answer("4");
  desktop_.InModal([](Form& file) { file.Hide(); });
  Click(count.CmdExportFakt);
  EXPECT_EQ(count.DataGrid7.CellText(2, "Actual"), "4,000");
  Leave(count, BoxAnswer::kOk);
  EXPECT_EQ(shop_.Column("SELECT CONCAT(COD,' ',KOL,' ',SUMM) FROM DOCINVENT JOIN JOURNAL ON DOC=JOURNAL.ID"),
            (Texts{"1 9000 -1070500", "2 4000 -1070500"}));

  // Lines that can't be seen aren't deleted, nor changed, nor lost by a slip; the first press shows them.
  Now(3);
  DocumentForm& write_off = Open(DocType::kWriteOff);
  Pick(DocType::kWriteOff, 1, 1000, 5000);
  for (Button* button : {&*write_off.CmdDel, &*write_off.CmdVar}) {
    faults_.FailAt(4);
    desktop_.ExpectRuntimeError();
    Pick(DocType::kWriteOff, 2, 1000, 5000);
    EXPECT_EQ(write_off.DataGrid7.Rows(), 0);
    Press(write_off.DataGrid7, "Esc");
    Click(*button);
  }
  EXPECT_EQ(write_off.DataGrid7.Rows(), 3);
  desktop_.Expect("Провести документ?", BoxAnswer::kOk);
  faults_.FailAt(7);
  Fails(write_off.RUNButton);
  EXPECT_FALSE(write_off.DocRun);  // closing asks
  // A window that can't tidy up leaves nothing to the next document.
  desktop_.Expect("Сохранить документ?", BoxAnswer::kOk);
  faults_.CutAt(7);
  Fails(write_off.CancelButton);  // the journal behind it can't be read
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM DOCUMENT"), "3");
  Open(DocType::kWriteOff);
  EXPECT_EQ(write_off.DataGrid7.Rows(), 0);
  // Rows that a program left which broke off are the operator's to judge.
  shop_.Sql("INSERT INTO DOCUMENT (COD,NAME,KOL,PRISE,COST,TYP) VALUES (1,'Чай',1000,5000,5000,1)");
  EXPECT_EQ(Open(DocType::kIncoming).DataGrid7.Rows(), 1);

  // A shift that isn't gathered whole isn't posted; what was gathered for another day neither.
  Sell(
      "(1,'Чай',1000,120500,120500,0,'2026-11-11 09:00:00',1,1),(2,'Вино',1000,950000,950000,0,'2026-11-11 "
      "09:00:00',1,2)");
  Now(12);
  auto& report = static_cast<frmDocDO&>(Open(DocType::kDailyReport));
  for (const bool cut : {true, false}) {
    Click(report.CmdDat);
    EXPECT_TRUE(report.RUNButton.Enabled() && report.mnuRun->Enabled());
    cut ? faults_.CutAt(5) : faults_.FailAt(2);
    Fails(report.CmdDat);
    EXPECT_FALSE(report.RUNButton.Enabled() || report.mnuRun->Enabled());
  }
}

/// A head that was written and whose number never came isn't written twice, whatever is changed before the next press;
/// what is saved is what stands in the window then.
TEST_F(DocumentsTest, AHeadWhoseNumberNeverCame) {
  Sell(
      "(1,'Чай',2000,120500,241000,0,'2026-11-10 09:00:00',1,1),(1,'Чай',1000,120500,120500,0,'2026-11-11 "
      "09:00:00',1,2)");
  auto& report = static_cast<frmDocDO&>(Open(DocType::kDailyReport));
  Click(report.CmdDat);
  faults_.FailAt(2);
  Fails(report.RUNButton);
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
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM JOURNAL"), "1");

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

TEST_F(DocumentsTest, ADocumentThatCouldntBeOpenedLeavesNothingToTheNext) {
  Receive(1, 1000, 80000, 1);
  const int received = LastDocument();
  shop_.Sql("INSERT INTO DOCUMENT (COD,TYP) VALUES (2,1)");  // left by a program that was killed
  DocumentForm& form = Reopen(received);
  EXPECT_EQ(form.DataGrid7.Rows(), 1);
  Leave(form, BoxAnswer::kOk);
  faults_.FailAt(2);
  desktop_.ExpectRuntimeError();
  Reopen(received);
  Now(20);
  Open(DocType::kIncoming);
  EXPECT_EQ(form.LblNumer.Caption() + form.LblData.Caption() + form.TextKlient->Text(), "");
  EXPECT_EQ(form.DataGrid7.Rows(), 0);
  Pick(DocType::kIncoming, 4, 1000, 1000);
  // Texts that break the save leave the document as it is, to be mended.
  Type(*form.TextKlient, "д'Артаньян");
  Fails(form.RUNButton);
  Type(*form.TextKlient, "Портос");
  Leave(form, BoxAnswer::kOk);
  EXPECT_EQ(shop_.Value(fmt::format("SELECT CONCAT(DATEDOC,KLIENT) FROM JOURNAL WHERE ID>{}", received)),
            "2026-11-20 12:00:00Портос");
  // A line that comes into one that couldn't be opened stands behind its own.
  faults_.FailAt(2);
  desktop_.ExpectRuntimeError();
  Reopen(LastDocument());
  Pick(DocType::kIncoming, 4, 1000, 1000);
  EXPECT_EQ(form.DataGrid7.Rows(), 2);
  // The tills get the balances of a posted one all the same.
  Post(form);
  Leave(form, BoxAnswer::kCancel);
  faults_.FailAt(2);
  desktop_.ExpectRuntimeError();
  Reopen(LastDocument());
  Click(*form.CmdUpd);
  EXPECT_EQ(shop_.Value("SELECT OST FROM TOVAR WHERE COD=4"), "2000");
}

TEST_F(DocumentsTest, AnOpenOutgoingInvoiceIsLeftForAnother) {
  DocumentForm& form = Open(DocType::kOutgoing);
  Pick(DocType::kOutgoing, 1, 1000, 100000);
  Leave(form, BoxAnswer::kOk);
  const int first = LastDocument();
  Open(DocType::kOutgoing);
  Pick(DocType::kOutgoing, 2, 1000, 100000);
  Pick(DocType::kOutgoing, 4, 1000, 100000);
  Type(*form.TextKlient, "Атос");
  desktop_.Expect("Сохранить документ?", BoxAnswer::kOk, BoxIcon::kQuestion);
  Reopen(first);
  EXPECT_EQ(form.DataGrid7.Rows(), 1);
  EXPECT_EQ(form.DocId, first);
  const int second = LastDocument();
  ASSERT_NE(first, second);
  EXPECT_EQ(Register(second).size(), 2U);
  EXPECT_NE(Head(second).find("Атос"), std::string::npos);
  // The same one again has what was saved of it; posted, it is left without a question.
  desktop_.Expect("Сохранить документ?", BoxAnswer::kCancel);
  Reopen(second);
  Type(*form.TextKlient, "Арамис");
  desktop_.Expect("Сохранить документ?", BoxAnswer::kOk);
  Reopen(second);
  EXPECT_EQ(form.TextKlient->Text(), "Арамис");
  Post(form);
  Reopen(first);
  EXPECT_EQ(form.LblRun.BackColor(), 255U);
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
  // Lines from elsewhere are shown for what they are, and nothing is lost by closing.
  shop_.Sql("INSERT INTO DOCUMENT (COD,NAME,KOL,PRISE,COST,TYP) VALUES (2,'Вино',1000,0,1500000000,1)");
  ComeBack(form);
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

  // So is a shift that sold more, be it in sums or in pieces of one product.
  Now(12);
  auto& report = static_cast<frmDocDO&>(Open(DocType::kDailyReport));
  for (const char* sold : {"(1,'Чай',1000,0,1500000000,0,'2026-11-11 09:00:00',1,1),"
                           "(2,'Вино',1000,0,1500000000,0,'2026-11-11 09:00:00',1,2)",
                           "(1,'Чай',1500000000,0,0,0,'2026-11-11 09:00:00',1,1),"
                           "(1,'Чай',1500000000,0,0,0,'2026-11-11 09:00:00',1,2)"}) {
    shop_.Sql("DELETE FROM PROD");
    Sell(sold);
    refused("Продажи НЕ выбраны.");
    Click(report.CmdDat);
    EXPECT_EQ(report.DataGrid7.Rows(), 0);
    EXPECT_FALSE(report.RUNButton.Enabled());
  }
}

}  // namespace
}  // namespace zrt
