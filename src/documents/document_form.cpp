#include "documents/document_form.h"

#include "core/errors.h"
#include "core/numbers.h"
#include "core/text.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

constexpr Colour kLampPosted = 65280;
constexpr Colour kLampOpen = 255;

template <class T>
void MakeIfDefined(DocumentForm& form, std::optional<T>& control, const char* name) {
  if (form.Definition().Find(name) != nullptr) control.emplace(form, name);
}

}  // namespace

DocumentForm::DocumentForm(Desktop& desktop, const DocumentKind& kind, const DocumentServices& services)
    : Form(desktop, kind.form),
      kind_(kind),
      session_(services.session),
      stock_(services.stock),
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
  if (CmdTov) CmdTov->Click = [this] { picker_.OpenFor(kind_.number); };
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
  if (DocId == -1) {
    PrepareNew();
  } else if (!DocOpen) {
    const std::string date = DocDate ? session_.Format().DateTimeText(*DocDate) : std::string();
    Caption = fmt::format("{}{} от {}", kind_.saved_caption, DocId, date);
    RunIndicator(DocRun);
    LblNumer.Caption = std::to_string(DocId);
    LblData.Caption = date;
    OpenLines(DocId);
    CountSum();
  }
  DataGrid7.SetFocus();
}

void DocumentForm::PrepareNew() {
  Caption = kind_.new_caption;
  DocRun = false;
  RunIndicator(false);
  DocSum = 0;
  if (LblSum) LblSum->Caption = Amount(DocSum);
  OpenLines(DocId);
}

void DocumentForm::OpenLinesBy(const std::string& sql) {
  // A new document opens its lines each time that it comes to the front; the grid stays where it was.
  const int row = DocOpen ? DataGrid7.Row() : 0;
  sum_known_ = false;
  session_.BindSet(lines_, sql);
  DataGrid7.Bind(lines_);
  FormatGrid();
  DocOpen = true;
  if (row > 0) StandOn(row);
}

void DocumentForm::StandOn(int row) {
  if (HasLines()) lines_.SetBookmark(std::clamp(row, 1, lines_.RecordCount()));
}

void DocumentForm::RequireLines() {
  if (!DocOpen) throw Error("the lines of the document were never read");
  if (!lines_.IsOpen()) {
    lines_.Requery();
    FormatGrid();
    sum_known_ = false;
  }
  if (!sum_known_) CountSum();
}

void DocumentForm::CountSum() {
  sum_known_ = false;
  SumRefresh();
  sum_known_ = true;
}

void DocumentForm::MoveLines() {
  if (!lines_to_move_) return;
  TakeNumber();
  lines_to_move_ = false;
}

void DocumentForm::EditLine() {
  if (DocRun) return;
  MoveLines();
  ChangeLine();
}

void DocumentForm::CancelButton_Click() {
  if (!run_known_) LearnRun();
  if (!DocRun &&
      TheDesktop().MsgBox("Сохранить документ?", BoxIcon::kQuestion, BoxButtons::kOkCancel) == BoxAnswer::kOk) {
    SaveDocument(false);
  }
  Close();
}

void DocumentForm::Form_Unload() {
  try {
    DeleteWorkingCopy();
  } catch (const Error&) {
    // What is left of the working copy goes when the next document of the kind is opened or closed.
  }
  if (DocOpen) lines_.Close();
  DocOpen = false;
  DocSum = 0;
  lines_to_move_ = false;
  run_known_ = true;
  find_head_.clear();
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
  Recordset& found = session_.ReadOne(BarcodeQuery() + scanned);
  if (found.RecordCount() == 0) {
    found.Close();
    TheDesktop().MsgBox("НЕТ ТАКОГО ШТРИХКОДА В БАЗЕ ДАННЫХ!", BoxIcon::kExclamation);
    return;
  }
  KnownProduct product;
  product.cod = ToInt32(found.Field("COD").Number());
  product.name = found.Field("NAME").TextOrEmpty();
  if (OffersRetail() && !found.Field("PRISE").IsNull()) {
    product.price = ToInt32(found.Field("PRISE").Number() * scale::kPriceToDocument);
  }
  found.Close();
  if (!OffersRetail()) product.price = stock_.GetPurchasePrice(product.cod);
  AskFor(product);
}

const char* DocumentForm::BarcodeQuery() const {
  return "SELECT DISTINCT COD,NAME,BARCODE FROM TOVAR WHERE BARCODE=";
}

void DocumentForm::CmdDel_Click() {
  MoveLines();
  const std::optional<std::int64_t> id = CurrentId();
  if (!id) return;
  DeleteLineStatement(*id);
  RefreshLines();
}

void DocumentForm::RefreshLines() {
  if (!DocOpen) return;
  // Who counts his way through a long list goes on where he was.
  const int row = lines_.Bookmark();
  lines_.Requery();
  StandOn(row);
  FormatGrid();
  CountSum();
}

std::optional<std::int64_t> DocumentForm::CurrentId() const {
  if (DataGrid7.Row() == 0 || lines_.Field("ID").IsNull()) return std::nullopt;
  return lines_.Field("ID").Int();
}

void DocumentForm::ForEachProduct(const std::function<void(int row, std::int32_t cod)>& visit) {
  std::int32_t remembered = -1;
  for (int row = 1; row <= lines_.RecordCount(); ++row) {
    const std::int32_t cod = ToInt32(lines_.At(row, lines_.FieldIndex("Cod")).Number());
    if (cod != remembered) visit(row, cod);
    remembered = cod;
  }
}

// Saving and posting

void DocumentForm::SaveDocument(bool post) {
  // Without its lines a save would empty the document's register rows.
  RequireLines();
  if (!run_known_) LearnRun();
  if (DocRun) return;
  MoveLines();
  Busy("сохранение документа...");
  if (DocId != -1) {
    session_.Write(UpdateHeadStatement(SqlDate()));
  } else if (!InsertHead()) {
    return;
  }
  if (TextKlient) DocKlient = TextKlient->Text();
  if (TextPrim) DocPrim = TextPrim->Text();
  MoveLines();
  WriteRegister(SqlDate());
  if (post) AskAndPost();
}

bool DocumentForm::InsertHead() {
  if (LblData.Caption().empty()) TakePresentDate();
  // A head that was written, and whose number couldn't be read then, isn't written twice.
  const bool written = !find_head_.empty() && session_.ReadOne(find_head_).RecordCount() > 0;
  if (!written) {
    const std::string control = stock_.MakeControlNumber();
    session_.Write(InsertHeadStatement(SqlDate(), control));
    find_head_ = FindHeadStatement(control);
  }
  const Recordset& head = session_.ReadOne(find_head_);
  find_head_.clear();
  if (head.RecordCount() == 0) {
    TheDesktop().MsgBox("ОШИБКА записи документа", BoxIcon::kCritical);
    return false;
  }
  DocId = ToInt32(head.Field("ID").Number());
  LblNumer.Caption = std::to_string(DocId);
  lines_to_move_ = true;
  if (written) {
    session_.Write(UpdateHeadStatement(SqlDate()));  // it may have been changed since
  } else {
    SetDate(head.Field("DATEDOC").Moment());
  }
  return true;
}

std::string DocumentForm::FindHeadStatement(const std::string& control) const {
  return fmt::format("SELECT ID, DATEDOC FROM JOURNAL WHERE DTYPE='{}' AND CNTRL={} AND SUMM={}", kind_.dtype, control,
                     DocSum);
}

void DocumentForm::RUNButton_Click() {
  RequireLines();
  if (HasLines()) SaveDocument(true);
}

void DocumentForm::AskAndPost() {
  if (TheDesktop().MsgBox("Провести документ?", BoxIcon::kQuestion, BoxButtons::kOkCancel) != BoxAnswer::kOk) return;
  Busy("проведение документа...");
  try {
    PostSaved(SqlDate());
  } catch (const Error&) {
    LearnRunInSpite();
    throw;
  }
  DocRun = true;
  RunIndicator(true);
  LblInf.Caption = "";
}

void DocumentForm::PostSaved(const std::string& date) {
  stock_.RunDocRegistr(DocId, true, date);
}

void DocumentForm::mnuUnRun_Click() {
  if (!DocRun) return;
  if (TheDesktop().MsgBox("Отменить проведение документа?", BoxIcon::kQuestion, BoxButtons::kOkCancel) !=
      BoxAnswer::kOk) {
    return;
  }
  Busy("отмена проведения документа...");
  try {
    stock_.RunDocRegistr(DocId, false, UnpostDate());
  } catch (const Error&) {
    LearnRunInSpite();
    throw;
  }
  DocRun = false;
  RunIndicator(false);
  LblInf.Caption = "";
}

void DocumentForm::LearnRun() {
  const Recordset& head = session_.ReadOne(fmt::format("SELECT RUN FROM JOURNAL WHERE ID={}", DocId));
  DocRun = !head.Eof() && !head.IsNull(0);
  run_known_ = true;
  RunIndicator(DocRun);
}

void DocumentForm::LearnRunInSpite() {
  run_known_ = false;
  try {
    LearnRun();
  } catch (const Error&) {
    // The next save asks again; the operator is to hear of what failed first.
  }
}

void DocumentForm::UpdateDocument() {
  ForEachProduct([this](int, std::int32_t cod) {
    session_.Write(fmt::format("UPDATE TOVAR SET OST={} WHERE COD={}{}", stock_.GetOstNow(cod), cod, UpdateTail()));
  });
}

// Texts and numbers

std::string DocumentForm::KlientText() const {
  return TextKlient ? Left(Trim(TextKlient->Text()), 50) : std::string();
}

std::string DocumentForm::PrimText(std::size_t count) const {
  return TextPrim ? Left(Trim(TextPrim->Text()), count) : std::string();
}

std::string DocumentForm::NowText() const {
  return session_.Format().DateTimeText(session_.TheClock().Now());
}

void DocumentForm::Busy(const char* text) {
  LblInf.Caption = text;
  LblInf.Repaint();
}

std::string DocumentForm::Amount(std::int32_t thousandths) const {
  return session_.Format().FormatNumber(thousandths / double{scale::kDocument}, 2);
}

std::int32_t DocumentForm::ToThousandths(const Cell& cell, int sign) {
  return ToInt32(cell.Number() * scale::kDocument * sign);
}

}  // namespace zrt
