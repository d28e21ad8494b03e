#include "documents/journal_tab.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "core/numbers.h"
#include "core/text.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

}  // namespace

JournalTab::JournalTab(Form& form, Session& session, Documents& documents)
    : FormSection(form), session_(session), documents_(documents) {
  DataGrid6.DblClick = [this] { OpenDocument(); };
  DataGrid6.KeyDown = [this](Key& key) {
    if (key.code == Key::kEnter) OpenDocument();
  };
}

void JournalTab::FirstFill() {
  session_.BindSet(session_.Pool().RsJournal,
                   "SELECT RUN As 'Entry',DTYPE As 'Document',ID As 'Num',DATEDOC As 'DateTime',"
                   "ROUND(SUMM/1000,2) As 'Summ',KLIENT As 'Klient',PRIM As 'Note' FROM JOURNAL ORDER BY DATEDOC");
  DataGrid6.Bind(session_.Pool().RsJournal);
  ShowNewest();
}

void JournalTab::Refresh() {
  session_.Pool().RsJournal.Requery();
  ShowNewest();
}

void JournalTab::ShowNewest() {
  Session::ShowLastRow(session_.Pool().RsJournal);
  FormatJournalGrid();
}

void JournalTab::FormatJournalGrid() {
  static constexpr auto kLayout = std::to_array<ColumnLayout>({{"Entry", 675, Align::kCentre},
                                                               {"Document", 2700, Align::kLeft},
                                                               {"Num", 825, Align::kRight},
                                                               {"DateTime", 1950, Align::kLeft},
                                                               {"Summ", 1350, Align::kRight, "0.00"},
                                                               {"Klient", 3000, Align::kLeft},
                                                               {"Note", 3750, Align::kLeft}});
  DataGrid6.Layout(kLayout);
}

void JournalTab::OpenDocument() {
  if (DataGrid6.Row() == 0) return;
  const Recordset& journal = session_.Pool().RsJournal;
  DocumentForm* const form = documents_.FormOf(journal.Field("Document").TextOrEmpty());
  if (form == nullptr) return;
  if (documents_.Form(form->Kind().journal_looks_at).DocOpen) {
    TheDesktop().MsgBox(std::string(form->Kind().open_already_in_journal));
    return;
  }
  if (form->IsLoaded() && !LeaveFor(journal.Field("Num").Text(), *form)) return;
  form->DocRun = !journal.Field("Entry").TextOrEmpty().empty();
  form->DocId = ToInt32(journal.Field("Num").Number());
  form->DocDate.reset();
  if (!journal.Field("DateTime").IsNull()) form->DocDate = journal.Field("DateTime").Moment();
  if (form->TextKlient) form->DocKlient = journal.Field("Klient").TextOrEmpty();
  if (form->TextPrim) form->DocPrim = journal.Field("Note").TextOrEmpty();
  form->Show();
}

bool JournalTab::LeaveFor(const std::string& number, DocumentForm& form) {
  form.Leave();
  if (form.IsLoaded()) return false;
  // The document that was left may be this very one: its row has what was saved a moment ago.
  Recordset& journal = session_.Pool().RsJournal;
  Refresh();
  if (journal.RecordCount() == 0) return false;
  journal.MoveFirst();
  journal.Find("Num", number);
  return !journal.Eof();
}

bool JournalTab::PasswordIsRight(const std::string& title) {
  Desktop& desktop = TheDesktop();
  if (desktop.AskPassword("Введите пароль системного администратора", title) == kAdministratorPassword) return true;
  desktop.MsgBox("Пароль неверный!", BoxIcon::kCritical);
  return false;
}

void JournalTab::DeleteOneDoc() {
  const std::string kTitle = "Удаление ОДНОГО документа";
  Desktop& desktop = TheDesktop();
  const std::string answer = desktop.InputBox("Введите номер документа", kTitle);
  if (answer.empty()) return;
  const std::optional<double> number = session_.Format().ParseNumber(answer);
  if (!number) {
    desktop.MsgBox("введите числовое значение!", BoxIcon::kCritical);
    return;
  }
  const std::int32_t id = ToInt32(*number);
  Recordset head = session_.ReadOne(fmt::format("SELECT RUN,DTYPE FROM JOURNAL WHERE ID={}", id));
  if (head.RecordCount() == 0) {
    desktop.MsgBox(fmt::format("документа №{} НЕ существует!", id), BoxIcon::kCritical);
    return;
  }
  const std::string dtype = Trim(head.Field("DTYPE").TextOrEmpty());
  if (!head.IsNull(0) && dtype != KindOf(DocType::kPriceChange).dtype) {
    desktop.MsgBox(
        fmt::format("документ {} №{} ПРОВЕДЁН!\n\rПеред удалением необходимо отменить проведение документа", dtype, id),
        BoxIcon::kCritical);
    return;
  }
  head.Close();
  if (PasswordIsRight(kTitle)) {
    session_.Write(fmt::format("DELETE FROM JOURNAL WHERE ID={}", id));
    session_.Write(fmt::format("DELETE FROM REGISTR WHERE DOC={}", id));
    session_.Write(fmt::format("DELETE FROM DOCINVENT WHERE DOC={}", id));
    session_.Write(fmt::format("DELETE FROM DOCPRICE WHERE DOC={}", id));
    desktop.MsgBox(fmt::format("Документ №{} удален!", id), BoxIcon::kExclamation);
  }
  Refresh();
  DataGrid6.SetFocus();
}

void JournalTab::DeleteAllDocs() {
  Desktop& desktop = TheDesktop();
  if (desktop.MsgBox("Удалить ВСЕ документы  и очистить регистр остатков?", BoxIcon::kQuestion,
                     BoxButtons::kOkCancel) != BoxAnswer::kOk) {
    return;
  }
  if (!PasswordIsRight("Удаление ВСЕХ документов")) return;
  for (const std::string_view table : {"JOURNAL", "REGISTR", "DOCUMENT", "DOCINVENT", "DOCPRICE"}) {
    session_.Write(fmt::format("DELETE FROM {}", table));
  }
  desktop.MsgBox("Все документы удалены, регистр остатков обнулён!", BoxIcon::kExclamation);
}

}  // namespace zrt
