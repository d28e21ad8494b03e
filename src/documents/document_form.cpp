#include "documents/document_form.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "core/errors.h"
#include "core/numbers.h"
#include "core/text.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

constexpr Colour kLampPosted = 65280;
constexpr Colour kLampOpen = 255;
constexpr std::string_view kNotSaved = "Документ НЕ сохранён.";
constexpr std::string_view kNotAdded = "Строка НЕ добавлена.";

template <class T>
void MakeIfDefined(DocumentForm& form, std::optional<T>& control, std::string_view name) {
  if (form.Definition().Find(name) != nullptr) control.emplace(form, std::string(name));
}

}  // namespace

DocumentForm::DocumentForm(Desktop& desktop, DocType type, const DocumentServices& services)
    : Form(desktop, std::string(KindOf(type).form)),
      kind_(KindOf(type)),
      session_(services.session),
      stock_(services.stock),
      store_(kind_, session_, stock_),
      book_(kind_, session_, stock_),
      picker_(services.picker),
      dialog_(services.dialog),
      movements_(services.movements) {
  MakeIfDefined(*this, LblSum, "LblSum");
  MakeIfDefined(*this, TextKlient, "TextKlient");
  MakeIfDefined(*this, TextPrim, "TextPrim");
  MakeIfDefined(*this, CmdUpd, "CmdUpd");
  MakeIfDefined(*this, CmdTov, "CmdTov");
  MakeIfDefined(*this, CmdBar, "CmdBar");
  MakeIfDefined(*this, CmdVar, "CmdVar");
  MakeIfDefined(*this, CmdDel, "CmdDel");
  MakeIfDefined(*this, mnuRun, "mnuRun");
  MakeIfDefined(*this, mnuUnRun, "mnuUnRun");
  MakeIfDefined(*this, mnuRegistr, "mnuRegistr");

  Activate = [this] { Form_Activate(); };
  Unload = [this] { Form_Unload(); };
  KeyDown = [this](Key& key) {
    // Where there is something to save, leaving is the affair of the button, which asks.
    const bool nothing_to_lose = DocRun || !DocOpen || (DocId == -1 && lines_.IsOpen() && !HasLines());
    if (key.code == Key::kEscape && nothing_to_lose) Close();
  };
  Month0.KeyDown = [this](Key& key) {
    if (key.code != Key::kEscape) return;
    key.swallow = true;
    Month0.Visible = false;
    CmdPlus.SetFocus();
  };
  RUNButton.Click = [this] { RUNButton_Click(); };
  CancelButton.Click = [this] { CancelButton_Click(); };
  CmdPlus.Click = [this] { CmdPlus_Click(); };
  Month0.DateClick = [this] { MonthClicked(); };
  if (CmdUpd) {
    CmdUpd->Click = [this] {
      RequireLines();
      UpdateDocument();
    };
  }
  if (CmdTov) CmdTov->Click = [this] { picker_.OpenFor(NumberOf(kind_.type)); };
  if (CmdBar) CmdBar->Click = [this] { CmdBar_Click(); };
  if (CmdDel) CmdDel->Click = [this] { CmdDel_Click(); };
  if (CmdVar) {
    CmdVar->Click = [this] { EditLine(); };
    DataGrid7.DblClick = [this] { EditLine(); };
    DataGrid7.KeyDown = [this](Key& key) {
      if (key.code == Key::kEnter) EditLine();
    };
  }
  if (mnuRun) mnuRun->Click = [this] { RUNButton_Click(); };
  if (mnuUnRun) mnuUnRun->Click = [this] { mnuUnRun_Click(); };
  if (mnuRegistr) mnuRegistr->Click = [this] { movements_.ShowDocument(DocId, Caption()); };
}

// Opening and closing

void DocumentForm::Form_Activate() {
  // Client and note are typed last: coming back from the picker brings back what they were before. They stand here
  // before the lines are read, so that a save after a failure doesn't empty them in the journal.
  if (TextKlient) TextKlient->Text = DocKlient;
  if (TextPrim) TextPrim->Text = DocPrim;
  if (DocId == -1 || !DocOpen) OpenDocument();
  DataGrid7.SetFocus();
}

void DocumentForm::OpenDocument() {
  if (DocId == -1) {
    // Rows that this form left would be posted a second time under the next number. Only its own go: what a program
    // that broke off or another place left is shown, and the operator says what becomes of it.
    if (rows_left_) DeleteWorkingCopy();
    return PrepareNew();
  }
  const std::string date = DocDate ? session_.Format().DateTimeText(*DocDate) : std::string();
  Caption = fmt::format("{}{} от {}", kind_.saved_caption, DocId, date);
  RunIndicator(DocRun);
  LblNumer.Caption = std::to_string(DocId);
  LblData.Caption = date;
  OpenLines(DocId);
}

void DocumentForm::PrepareNew() {
  Caption = kind_.new_caption;
  DocRun = false;
  RunIndicator(false);
  DocSum = 0;
  if (LblSum) LblSum->Caption = Amount(DocSum);
  OpenLines(DocId);
}

void DocumentForm::ReadLines(const std::string& sql) {
  const int row = DataGrid7.Row();
  if (lines_.IsOpen() && sql == lines_sql_) {
    lines_.Requery();
  } else {
    lines_sql_ = sql;
    session_.BindSet(lines_, sql);
    DataGrid7.Bind(lines_);
  }
  lines_link_ = session_.MainConnection.Link();
  FormatGrid();
  DocOpen = true;
  if (HasLines()) lines_.SetBookmark(row == 0 ? lines_.RecordCount() : std::min(row, lines_.RecordCount()));
  try {
    SumRefresh();
  } catch (const Error&) {
    lines_.Close();
    throw;
  }
}

void DocumentForm::ShowAddedLines() {
  RefreshLines();
  Session::ShowLastRow(lines_);
}

void DocumentForm::RequireLines() {
  if (!DocOpen) {
    OpenDocument();
  } else if (DocId != -1 && store_.MoveTo(DocId)) {
    OpenLines(DocId);
  } else if (!lines_.IsOpen() || session_.MainConnection.IsLost() || lines_link_ != session_.MainConnection.Link()) {
    RefreshLines();
  }
}

bool DocumentForm::TakesLines() {
  if (!IsLoaded() || DocRun) return false;
  RequireLines();
  return true;
}

void DocumentForm::BroadcastReciever(std::int32_t cod, std::int32_t kol, std::int32_t price) {
  if (!TakesLines()) return;
  const DocumentLines::Added added = store_.Add(cod, kol, price, DocSum);
  switch (added.outcome) {
    case DocumentLines::Outcome::kAdded:
      try {
        return ShowAddedLines();
      } catch (const DatabaseError& error) {
        throw error.Leaving("Строка уже в документе: добавлять её снова не нужно.");
      }
    case DocumentLines::Outcome::kNoProduct:
      return;
    case DocumentLines::Outcome::kTooLarge:
      return TellTooLarge(kNotAdded);
    case DocumentLines::Outcome::kThereAlready:
      TheDesktop().MsgBox(fmt::format("Товар {} уже выбран в документе!!! ", added.name), BoxIcon::kCritical);
  }
}

bool DocumentForm::SumFits(std::int64_t sum, std::string_view what) {
  if (!FitsTables(sum)) TellTooLarge(what);
  return FitsTables(sum);
}

void DocumentForm::TellTooLarge(std::string_view what) {
  constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max() / 10;  // whole hundredths
  TheDesktop().MsgBox(fmt::format("Сумма больше {}: в документ она не помещается!\n\r{}",
                                  session_.Format().FormatNumber(kLargest / 100.0, 2), what),
                      BoxIcon::kCritical);
}

void DocumentForm::EditLine() {
  if (DocRun) return;
  const std::optional<std::int64_t> seen = CurrentId();
  RequireLines();
  if (seen && CurrentId() == seen) ChangeLine();
}

void DocumentForm::Leave() {
  if (IsLoaded()) CancelButton_Click();
}

void DocumentForm::CancelButton_Click() {
  // A document that couldn't be opened has nothing to save.
  if (DocOpen && !DocRun &&
      TheDesktop().MsgBox("Сохранить документ?", BoxIcon::kQuestion, BoxButtons::kOkCancel) == BoxAnswer::kOk) {
    RequireLines();
    if (!SumFits(DocSum, kNotSaved)) return;
    SaveDocument(false);
  }
  Close();
}

void DocumentForm::Form_Unload() {
  rows_left_ = true;
  IgnoreFailure([this] { DeleteWorkingCopy(); });
  if (DocOpen) lines_.Close();
  DocOpen = false;
  DocSum = 0;
  book_.Forget();
}

void DocumentForm::DeleteWorkingCopy() {
  store_.DeleteWorkingCopy();
  rows_left_ = false;
}

void DocumentForm::RunIndicator(bool run) {
  // A day picked now would change the date under which the document stands in the register.
  if (run) Month0.Visible = false;
  LblRun.BackColor = run ? kLampPosted : kLampOpen;
  RUNButton.Enabled = !run;
  if (mnuRun) mnuRun->Enabled = !run;
  if (mnuUnRun) mnuUnRun->Enabled = run;
  if (mnuRegistr) mnuRegistr->Enabled = run;
  if (CmdUpd) CmdUpd->Enabled = run;
  for (std::optional<Button>* button : {&CmdDel, &CmdTov, &CmdBar, &CmdVar}) {
    if (*button) (*button)->Enabled = !run;
  }
  CmdPlus.Enabled = !run;
  for (std::optional<TextBox>* box : {&TextKlient, &TextPrim}) {
    if (!*box) continue;
    (*box)->Enabled = !run;
    (*box)->BackColor = run ? colour::kButtonFace : colour::kWindow;
  }
}

// The date

void DocumentForm::CmdPlus_Click() {
  const std::optional<DateTime> shown = ParseDateTime(LblData.Caption());
  Month0.Value = shown ? shown->date : session_.TheClock().Now().date;
  Month0.Visible = true;
  Month0.SetFocus();
}

void DocumentForm::MonthClicked() {
  DateTime moment = session_.TheClock().Now();
  moment.date = Month0.Value();
  SetDate(moment);
  Month0.Visible = false;
}

void DocumentForm::SetDate(const DateTime& moment) {
  DocDate = moment;
  LblData.Caption = session_.Format().DateTimeText(moment);
}

void DocumentForm::TakePresentDate() {
  SetDate(session_.TheClock().Now());
}

std::string DocumentForm::SqlDate() const {
  return CutSqlDateTime(DocDate ? session_.Format().DateTimeText(*DocDate) : std::string());
}

// The lines

void DocumentForm::CmdBar_Click() {
  const std::string scanned = TheDesktop().InputBox("отсканируйте Штрихкод", "Штрихкод");
  if (scanned.empty()) return;
  // Without quotes: the database compares numbers, so that leading zeros of the scanner don't matter.
  Recordset found = session_.ReadOne(fmt::format("SELECT DISTINCT COD,NAME,BARCODE{} FROM TOVAR WHERE BARCODE={}",
                                                 kind_.scans_retail ? ",PRISE" : "", scanned));
  if (found.RecordCount() == 0) {
    found.Close();
    TheDesktop().MsgBox("НЕТ ТАКОГО ШТРИХКОДА В БАЗЕ ДАННЫХ!", BoxIcon::kExclamation);
    return;
  }
  KnownProduct product;
  product.cod = ToInt32(found.Field("COD").Number());
  product.name = found.Field("NAME").TextOrEmpty();
  if (kind_.scans_retail && !found.Field("PRISE").IsNull()) {
    product.price = ToInt32(found.Field("PRISE").Number() * scale::kPriceToDocument);
  }
  found.Close();
  if (!kind_.scans_retail) product.price = stock_.GetPurchasePrice(product.cod);
  AskFor(product);
}

void DocumentForm::CmdDel_Click() {
  // Lines that have to be read first are seen before one of them goes.
  const std::optional<std::int64_t> id = CurrentId();
  RequireLines();
  if (!id) return;
  store_.Delete(*id);
  RefreshLines();
}

std::optional<std::int64_t> DocumentForm::CurrentId() const {
  if (DataGrid7.Row() == 0 || lines_.Field("ID").IsNull()) return std::nullopt;
  return lines_.Field("ID").Int();
}

// Saving and posting

void DocumentForm::SaveDocument(bool post) {
  RequireLines();
  if (!SumFits(DocSum, kNotSaved)) return;
  Busy("сохранение документа...");
  if (DocId != -1) {
    book_.UpdateHead(Head());
  } else if (!InsertHead()) {
    return;
  }
  if (TextKlient) DocKlient = TextKlient->Text();
  if (TextPrim) DocPrim = TextPrim->Text();
  RequireLines();
  book_.WriteRegister(Head(), lines_);
  if (post) AskAndPost();
}

bool DocumentForm::InsertHead() {
  if (LblData.Caption().empty()) TakePresentDate();
  const std::optional<WrittenHead> head = book_.InsertHead(NewHead());
  if (!head) {
    TheDesktop().MsgBox("ОШИБКА записи документа", BoxIcon::kCritical);
    return false;
  }
  DocId = head->id;
  LblNumer.Caption = std::to_string(DocId);
  SetDate(head->date);
  return true;
}

DocumentHead DocumentForm::Head() const {
  return {.id = DocId,
          .date = SqlDate(),
          .sum = DocSum,
          .klient = TextKlient ? Left(Trim(TextKlient->Text()), 50) : std::string(),
          .prim = PrimText()};
}

void DocumentForm::RUNButton_Click() {
  RequireLines();
  if (HasLines()) SaveDocument(true);
}

void DocumentForm::AskAndPost() {
  if (TheDesktop().MsgBox("Провести документ?", BoxIcon::kQuestion, BoxButtons::kOkCancel) != BoxAnswer::kOk) return;
  Busy("проведение документа...");
  book_.Post(Head(), lines_);
  DocRun = true;
  RunIndicator(true);
  LblInf.Caption = "";
}

void DocumentForm::mnuUnRun_Click() {
  if (!DocRun) return;
  if (TheDesktop().MsgBox("Отменить проведение документа?", BoxIcon::kQuestion, BoxButtons::kOkCancel) !=
      BoxAnswer::kOk) {
    return;
  }
  Busy("отмена проведения документа...");
  // Before the first statement: a document that is half taken out isn't posted, and is put right by posting it again.
  DocRun = false;
  RunIndicator(false);
  book_.Unpost(DocId, UnpostDate());
  LblInf.Caption = "";
}

// Texts and numbers

std::string DocumentForm::PrimText(std::size_t count) const {
  return TextPrim ? Left(Trim(TextPrim->Text()), count) : std::string();
}

std::string DocumentForm::NowText() const {
  return session_.Format().DateTimeText(session_.TheClock().Now());
}

void DocumentForm::Busy(std::string_view text) {
  LblInf.Caption = text;
  LblInf.Repaint();
}

std::string DocumentForm::Amount(std::int64_t thousandths) const {
  return session_.Format().FormatNumber(static_cast<double>(thousandths) / scale::kDocument, 2);
}

}  // namespace zrt
