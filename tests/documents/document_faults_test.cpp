// Documents whose server fails on the way: what is saved by then, what is lost on purpose, what mends it.

#include "documents/documents_shop.h"

namespace zrt {
namespace {

using test::DocumentsTest;
using test::Texts;

TEST_F(DocumentsTest, FaultsLoseNothingThatCantBeMended) {
  Now(2);
  DocumentForm& form = Open(kind::kOutgoing);
  Pick(kind::kOutgoing, 1, 1000, 100000);
  Pick(kind::kOutgoing, 2, 2000, 100000);
  Type(*form.TextKlient, "д'Артаньян");
  desktop_.ExpectRuntimeError();
  Click(form.RUNButton);
  EXPECT_EQ(form.DocId, -1);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM JOURNAL"), "0");
  Type(*form.TextKlient, "Портос");
  // The server fails after the head, between the lines, and while posting: saving and posting again repairs it.
  // The first save: the head, its search, the register's old rows, then each line's N6 and its row.
  faults_.FailAt(6);
  desktop_.ExpectRuntimeError();
  Click(form.RUNButton);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM REGISTR"), "1") << "half saved";
  for (int statement = 1; statement <= 15; ++statement) {
    SCOPED_TRACE(statement);
    if (form.DocRun) Unpost(form);
    faults_.FailAt(statement);
    if (statement > 6) desktop_.Expect("Провести документ?", BoxAnswer::kOk);
    desktop_.ExpectRuntimeError();
    Click(form.RUNButton);
    desktop_.CheckAllCame();
    ASSERT_NE(form.DocId, -1) << statement;
    // Where the journal has it as posted already, so has the form: out with it and in again.
    EXPECT_EQ(form.DocRun, shop_.Value("SELECT RUN FROM JOURNAL") == "OK");
    EXPECT_EQ(form.mnuUnRun->Enabled(), form.DocRun);
    if (form.DocRun) Unpost(form);
    Post(form);
    ASSERT_EQ(shop_.Column("SELECT CONCAT(COD,' ',KOL,' ',OSTKOL,' ',RUN) FROM REGISTR ORDER BY COD"),
              (Texts{"1 -1000 -1000 1", "2 -2000 -2000 1"}))
        << statement;
  }
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM JOURNAL"), "1");

  // A head whose number couldn't be read isn't written twice; what was changed since goes into it.
  DocumentForm& second = Open(kind::kIncoming);
  Pick(kind::kIncoming, 4, 1000, 10000);
  faults_.FailAt(2);
  desktop_.ExpectRuntimeError();
  Click(second.RUNButton);
  EXPECT_EQ(second.DocId, -1);
  Pick(kind::kIncoming, 4, 1000, 10000);
  Type(*second.TextPrim, "ещё");
  Leave(second, BoxAnswer::kOk);
  EXPECT_EQ(shop_.Column("SELECT CONCAT(SUMM,' ',PRIM) FROM JOURNAL ORDER BY ID DESC"),
            (Texts{"20000 ещё", "300000 "}));
  shop_.Sql("DELETE FROM REGISTR WHERE COD=4");
  shop_.Sql("DELETE FROM JOURNAL WHERE PRIM='ещё'");

  // Deleted under its open form: the form lives on with what it has.
  Unpost(form);
  shop_.Sql("DELETE FROM JOURNAL");
  Leave(form, BoxAnswer::kOk);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM REGISTR"), "2");
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM JOURNAL"), "0");

  // A sum beyond 32 bits, a head that can't be found again, and nothing to post.
  DocumentForm& write_off = Open(kind::kWriteOff);
  Click(write_off.RUNButton);
  desktop_.ExpectRuntimeError();
  Pick(kind::kWriteOff, 1, 2000000000, 2000000000);
  Pick(kind::kWriteOff, 1, 1000, 5000);
  shop_.Sql("CREATE TRIGGER LOSE BEFORE INSERT ON JOURNAL FOR EACH ROW SET NEW.CNTRL=0");
  desktop_.Expect("ОШИБКА записи документа", BoxAnswer::kOk, BoxIcon::kCritical);
  Click(write_off.RUNButton);
  EXPECT_EQ(write_off.DocId, -1);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM REGISTR"), "2");
}

TEST_F(DocumentsTest, LinesThatCouldntBeReadAreNeverSavedAsNone) {
  Now(2);
  DocumentForm& form = Open(kind::kIncoming);
  Pick(kind::kIncoming, 1, 1000, 80000);
  Leave(form, BoxAnswer::kOk);
  const int id = std::stoi(shop_.Value("SELECT MAX(ID) FROM JOURNAL"));
  // The link breaks while the lines are read again: saving reads them first.
  Reopen(id);
  faults_.FailAt(2);
  desktop_.ExpectRuntimeError();
  Pick(kind::kIncoming, 2, 1000, 80000);
  faults_.FailAt(3);
  desktop_.ExpectRuntimeError();
  Pick(kind::kIncoming, 2, 1000, 80000);
  EXPECT_EQ(form.DataGrid7.Rows(), 0);
  Leave(form, BoxAnswer::kOk);
  EXPECT_EQ(Register(id).size(), 2U);
  // They couldn't be read at all: the save fails before its first statement.
  shop_.Sql("UPDATE TOVAR SET NAME='д''Артаньян' WHERE COD=1");
  desktop_.ExpectRuntimeError();
  Reopen(id);
  desktop_.Expect("Сохранить документ?", BoxAnswer::kOk);
  desktop_.ExpectRuntimeError();
  Click(form.CancelButton);
  EXPECT_EQ(Register(id).size(), 2U);
  Leave(form, BoxAnswer::kCancel);

  shop_.Sql("UPDATE TOVAR SET NAME='Чай' WHERE COD=1");

  // A count whose head is saved and whose lines haven't moved yet: the next save moves them.
  Receive(1, 10000, 80000, 3);
  Now(5);
  DocumentForm& count = Open(kind::kInventory);
  Click(static_cast<frmDocIN&>(count).CmdDat);
  desktop_.Expect("Поместить документ в конец дня (23:59)?", BoxAnswer::kCancel);
  faults_.FailAt(3);
  desktop_.ExpectRuntimeError();
  Click(count.RUNButton);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM DOCINVENT WHERE DOC=-1"), "1");
  // So does whatever is done to them before.
  Pick(kind::kInventory, 4, 3000, 0);
  desktop_.ExpectInput("Вода\r\rучётный остаток = 0,000", "5");
  Click(*count.CmdVar);
  EXPECT_EQ(
      shop_.Column("SELECT CONCAT(COD,' ',KOL) FROM DOCINVENT WHERE DOC=(SELECT MAX(ID) FROM JOURNAL) ORDER BY COD"),
      (Texts{"1 10000", "4 5000"}));
  Leave(count, BoxAnswer::kOk);
  EXPECT_EQ(shop_.Value("SELECT COUNT(*) FROM DOCINVENT WHERE DOC=-1"), "0");
  EXPECT_EQ(shop_.Value("SELECT SUMM FROM JOURNAL ORDER BY ID DESC LIMIT 1"), "200000");

  // After a scan a new document stands on its new line.
  DocumentForm& invoice = Open(kind::kOutgoing);
  Pick(kind::kOutgoing, 2, 1000, 1000);
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

/// Wherever the opening of a document breaks off: what the journal says of it stays, however it is left.
TEST_F(DocumentsTest, AnOpeningThatFailsEmptiesNothingInTheJournal) {
  DocumentForm& form = Open(kind::kIncoming);
  Pick(kind::kIncoming, 1, 1000, 80000);
  Pick(kind::kIncoming, 2, 2000, 40000);
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
    if (form.DocOpen) {
      Leave(form, BoxAnswer::kOk);
    } else {
      desktop_.Expect("Сохранить документ?", BoxAnswer::kOk);
      desktop_.ExpectRuntimeError();
      Click(form.CancelButton);
      Leave(form, BoxAnswer::kCancel);
    }
    EXPECT_EQ(Head(id), head);
    EXPECT_EQ(Register(id), rows);
  }

  // The sum alone couldn't be computed after a line was added: it is before the save.
  Reopen(id);
  desktop_.ExpectRuntimeError();
  faults_.FailAt(4);  // the product, its line, the lines, the sum
  Pick(kind::kIncoming, 1, 1000, 10000);
  EXPECT_TRUE(faults_.Statements().back().starts_with("SELECT SUM"));
  Leave(form, BoxAnswer::kOk);
  EXPECT_EQ(shop_.Value("SELECT SUMM FROM JOURNAL"), "170000");
}

TEST_F(DocumentsTest, APostedDocumentTakesNothingFromWhatStaysOpenOverIt) {
  for (const std::uint8_t number : {kind::kIncoming, kind::kInventory, kind::kPriceChange}) {
    SCOPED_TRACE(static_cast<int>(number));
    Now(5 + number, 12);
    DocumentForm& form = Open(number);
    Pick(number, 1, 1000, 80000);
    Click(form.CmdPlus);
    EXPECT_TRUE(form.Month0.Visible());
    if (number == kind::kInventory) desktop_.Expect("Поместить документ в конец дня (23:59)?", BoxAnswer::kCancel);
    Post(form);
    EXPECT_FALSE(form.Month0.Visible());
    const int rows = form.DataGrid7.Rows();
    Pick(number, 2, 1000, 80000);
    EXPECT_EQ(form.DataGrid7.Rows(), rows);
    Leave(form, BoxAnswer::kOk);
  }
}

}  // namespace
}  // namespace zrt
