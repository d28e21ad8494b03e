#include "sales/frm_clear.h"

#include <fmt/format.h>

#include "core/errors.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

constexpr int kDaysKept = 7;
constexpr int kDeletionsTrimmedAbove = 1000;
constexpr int kDeletionsKept = 100;

}  // namespace

ClearingForm::ClearingForm(Desktop& desktop, std::string name, Session& session, std::string state_statement)
    : Form(desktop, std::move(name)), session_(session), state_statement_(std::move(state_statement)) {
  Load = [this] {
    // Counted from the day on which the program started: a day merely looked at must not change what is deleted.
    Text4.Text = session_.Format().DateText(AddDays(session_.StartDay, -kDaysKept));
    ShowState();
  };
  CmdPlusD.Click = [this] { CmdPlusD_Click(); };
  MonthD.DateClick = [this] { MonthD_DateClick(); };
  // Esc closes what is in front: first the calendar, then the window.
  MonthD.KeyDown = [this](Key& key) {
    if (key.code != Key::kEscape) return;
    key.swallow = true;
    MonthD.Visible = false;
    CmdPlusD.SetFocus();
  };
  KeyDown = [this](Key& key) {
    if (key.code == Key::kEscape) Hide();
  };
}

void ClearingForm::Open() {
  // A hidden window still shows its old day and counts: load it anew.
  if (!IsVisible()) Close();
  Show();
}

void ClearingForm::CmdPlusD_Click() {
  MonthD.Value = ParseDate(Text4.Text()).value_or(session_.TheClock().Now().date);
  MonthD.Visible = true;
}

void ClearingForm::MonthD_DateClick() {
  Text4.Text = session_.Format().DateText(MonthD.Value());
  MonthD.Visible = false;
  CmdDel.SetFocus();
}

void ClearingForm::ClearSalesData(const Clearing& what) {
  const std::string day = Text4.Text();
  if (!ParseDate(day)) {
    TheDesktop().MsgBox("Введите значение в формате даты!\nНапример: '31.12.2004'", BoxIcon::kCritical);
    Text4.SetFocus();
    Text4.SelectAll();
    return;
  }
  const BoxAnswer answer = TheDesktop().MsgBox("Удалить записи по 23:59:59 " + day + " ?", BoxIcon::kQuestion,
                                               BoxButtons::kOkCancel, "KORVINA");
  if (answer != BoxAnswer::kOk) return;

  // The calendar day counts here, not the shift: what a night's shift sold after it stays.
  const std::string end = CutSqlDate(day) + " 23:59:59";
  if (what.trim_deletions) TrimDeletions();
  if (!what.is_lite) session_.Write(fmt::format("DELETE FROM PROD WHERE DATETIME <= '{}'", end));
  session_.Write(fmt::format("DELETE FROM KASSA WHERE DAT <= '{}'", end));
  if (what.is_lite) {
    ShowStateAfterClearingLite();
  } else {
    ShowState();
  }
  if (what.clear_marks) {
    // Only restaurants have the table of the marks.
    IgnoreFailure([&] { session_.Write(fmt::format("DELETE FROM AKZMARK WHERE DAT <= '{}'", end)); });
  }
  TheDesktop().MsgBox("Удалены записи по 23:59:59 " + day, BoxIcon::kExclamation, BoxButtons::kOk, "KORVINA");
  Hide();
}

void ClearingForm::TrimDeletions() {
  Recordset deletions = session_.ReadOne("SELECT * FROM SPION");
  const int count = deletions.RecordCount();
  if (count > kDeletionsTrimmedAbove) {
    // SPION has no number of its own, so the rows to keep are marked by their stamp in the column of the person, who is
    // lost with it.
    session_.Write("UPDATE SPION SET REZ=1");
    const int stamp = deletions.FieldIndex("DATETIME");
    for (int row = count - kDeletionsKept + 1; row <= count; ++row) {
      session_.Write(
          fmt::format("UPDATE SPION SET REZ=0 WHERE DATETIME LIKE '%{}%'", deletions.At(row, stamp).TextOrEmpty()));
    }
    session_.Write("DELETE FROM SPION WHERE REZ=1");
  }
  deletions.Close();
}

void ClearingForm::ShowState() {
  Recordset& rows = session_.Pool().RsTotals;
  session_.BindSet(rows, state_statement_);
  if (rows.RecordCount() == 0) {
    LabelProd.Caption = "В таблице продаж нет записей!";
  } else {
    std::string state = fmt::format("В таблице продаж {} строк.", rows.RecordCount());
    if (!rows.IsNull(0)) state += "\nПервая создана " + rows.Field(0).Display(session_.Format());
    LabelProd.Caption = std::move(state);
  }
  rows.Close();
}

void ClearingForm::ShowStateAfterClearingLite() {
  Recordset& rows = session_.Pool().RsTotals;
  session_.BindSet(rows, state_statement_);
  LabelProd.Caption = rows.RecordCount() == 0
                          ? std::string("В таблице реализации нет записей!")
                          : fmt::format("В таблице реализации {} строк. Первая создана {}", rows.RecordCount(),
                                        rows.Field(0).Display(session_.Format()));
  rows.Close();
}

frmClear::frmClear(Desktop& desktop, Session& session)
    : ClearingForm(desktop, "frmClear", session, "SELECT DATETIME FROM PROD ORDER BY DATETIME") {
  CmdDel.Click = [this] { ClearSalesData({.trim_deletions = Check2.Value(), .clear_marks = Check1.Value()}); };
  Complete();
}

frmClearLite::frmClearLite(Desktop& desktop, Session& session)
    : ClearingForm(desktop, "frmClearLite", session, "SELECT DAT FROM KASSA ORDER BY DAT") {
  CmdDel.Click = [this] { ClearSalesData({.is_lite = true}); };
  Complete();
}

}  // namespace zrt
