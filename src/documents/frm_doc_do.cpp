#include "documents/frm_doc_do.h"

#include <fmt/format.h>

#include <cstdint>
#include <optional>
#include <string>

#include "core/errors.h"
#include "core/numbers.h"
#include "core/shift_hour.h"
#include "core/text.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

constexpr std::string_view kGrid =
    "SELECT COD As 'Cod',NAME As 'Name',ROUND(KOL/1000,3) As 'Value',ROUND(PRISE/1000,3) As 'Price',"
    "ROUND(COST/1000,3) As 'Summ',REZ As 'Card',ID FROM DOCUMENT WHERE TYP=";

// The aliases stand in backticks: quoted ones are constants to present servers, which would make one row of it all.
constexpr std::string_view kSold =
    "SELECT COD As 'Код',NAME,SUM(KOL),ROUND(SUM2/KOL*1000) As 'Цена',SUM(SUM2),REZ As 'ДКарта' FROM PROD WHERE"
    " DATETIME >= '{}' AND DATETIME < '{}' GROUP BY `Код`,`Цена`,`ДКарта` ORDER BY `Код`";

constexpr int kHours = 24;
constexpr std::string_view kNotGathered = "Продажи НЕ выбраны.";

std::string TwoDigits(int hour) {
  return Right("0" + std::to_string(hour), 2);
}

std::string Number(const Cell& cell) {
  return cell.IsNull() ? "0" : cell.Text();
}

}  // namespace

frmDocDO::frmDocDO(Desktop& desktop, const DocumentServices& services)
    : LineDocument(desktop, DocType::kDailyReport, services, kGrid) {
  CmdPlus.Click = [this] { OpenCalendar(); };
  Combo1.Click = [this] { Combo1_Click(); };
  CmdDat.Click = [this] { CmdDat_Click(); };
  Complete();
}

void frmDocDO::PrepareNew() {
  Caption = Kind().new_caption;
  FrameNew.Enabled = true;
  for (const std::string& hour : ShiftHours()) Combo1.AddItem(hour);
  Combo1.Text = ReadShiftHour(session_).value_or("0");
  TextDate.Caption = session_.Format().DateText(AddDays(session_.TheClock().Now().date, -1));
  DocRun = false;
  RunIndicator(false);
  DocSum = 0;
  RUNButton.Enabled = false;
  mnuRun->Enabled = false;
  GetNewTableDoc();
}

void frmDocDO::RunIndicator(bool run) {
  LineDocument::RunIndicator(run);
  CmdDat.Enabled = !run;
}

void frmDocDO::Combo1_Click() {
  StoreShiftHour(session_, Combo1.Text());
}

void frmDocDO::OpenCalendar() {
  if (Combo1.Text().empty()) {
    TheDesktop().MsgBox("Не установлено начало смены!!!", BoxIcon::kCritical);
    return;
  }
  Month0.Value = ParseDate(TextDate.Caption()).value_or(session_.TheClock().Now().date);
  Month0.Visible = true;
  Month0.SetFocus();
}

void frmDocDO::MonthClicked() {
  TextDate.Caption = session_.Format().DateText(Month0.Value());
  Month0.Visible = false;
  CmdDat.Enabled = true;
  CmdDat.SetFocus();
}

std::string frmDocDO::ReportDate() const {
  return CutSqlDate(TextDate.Caption()) + " 23:00:00";
}

int frmDocDO::Hour() const {
  return ToInt32(session_.Format().ParseNumber(Combo1.Text()).value_or(0));
}

std::string frmDocDO::ShiftStart(int hour) const {
  return fmt::format("{} {}:00:00", CutSqlDate(TextDate.Caption()), TwoDigits(hour));
}

void frmDocDO::CmdDat_Click() {
  Month0.Visible = false;
  // The journal holds "OK" and never 1, so this finds no report; a second one for a day has always been possible.
  const Recordset report = session_.ReadOne(
      fmt::format("SELECT DATEDOC FROM JOURNAL WHERE RUN=1 AND DTYPE='Дневной Отчёт' AND DATEDOC='{}'", ReportDate()));
  if (report.RecordCount() > 0) {
    TheDesktop().MsgBox(fmt::format("Существует проведённый Дневной Отчёт за {}!", TextDate.Caption()),
                        BoxIcon::kCritical);
    return;
  }
  Busy("обработка запроса...");
  LblSum->Caption = "";
  const std::optional<Date> day = ParseDate(TextDate.Caption());
  if (!day) return;
  int hour = Hour();
  const std::string from = ShiftStart(hour);
  int days = 1;
  if (hour == 0) {
    hour = kHours;
    days = 0;
  }
  const std::string end_day = CutSqlDate(session_.Format().DateText(AddDays(*day, days)));
  Gather(from, fmt::format("{} {}:59:59", end_day, TwoDigits(hour - 1)));
}

void frmDocDO::Gather(const std::string& from, const std::string& to) {
  // What was gathered before goes; nothing of it may be posted under another day.
  RUNButton.Enabled = false;
  mnuRun->Enabled = false;
  store_.DeleteWorkingCopy();
  // From here on gathering goes on whatever fails: one product's line mustn't keep the shift from being closed. That
  // the link is gone is told by the lines, which can't be read then: of a shift that isn't whole nothing is posted.
  Recordset sold;
  IgnoreFailure([&] { session_.BindSet(sold, fmt::format(kSold, from, to)); });
  if (sold.RecordCount() == 0 || sold.IsNull(2) || sold.IsNull(4)) {
    GetNewTableDoc();
    LblSum->Caption = "";
    TheDesktop().MsgBox("Нет продаж!", BoxIcon::kCritical);
    return;
  }
  if (!SalesFit(sold)) return GetNewTableDoc();
  for (; !sold.Eof(); sold.MoveNext()) {
    IgnoreFailure([&] {
      session_.Write(
          fmt::format("INSERT INTO DOCUMENT (COD,NAME,KOL,PRISE,COST,REZ,TYP) VALUES ({},'{}',{},{},{},{},0)",
                      Number(sold.Field(0)), sold.Field(1).TextOrEmpty(), Number(sold.Field(2)), Number(sold.Field(3)),
                      Number(sold.Field(4)), Number(sold.Field(5))));
    });
  }
  GetNewTableDoc();
  LblInf.Caption = "";
  RUNButton.Enabled = true;
  mnuRun->Enabled = true;
}

bool frmDocDO::SalesFit(const Recordset& sold) {
  std::int64_t sum = 0;
  for (int row = 1; row <= sold.RecordCount(); ++row) {
    for (const int field : {2, 3, 4}) {
      const Cell number = sold.At(row, field);
      if (!number.IsNull() && !SumFits(number.Int(), kNotGathered)) return false;
    }
    if (!sold.At(row, 4).IsNull()) sum += sold.At(row, 4).Int();
  }
  return SumFits(sum, kNotGathered);
}

DocumentHead frmDocDO::NewHead() const {
  DocumentHead head = Head();
  head.date = ReportDate();
  head.prim = fmt::format("Закрытие продаж {} за {}", NowText(), Left(TextDate.Caption(), 10));
  return head;
}

void frmDocDO::UpdateDocument() {
  if (!HasLines()) return;
  LineDocument::UpdateDocument();
  session_.Write("UPDATE TOVAR SET KOL=0");
  // A report opened from the journal knows no shift: nothing counts as sold then.
  if (!ParseDate(TextDate.Caption())) return;
  const std::string from = ShiftStart(Hour());
  Recordset sold;
  session_.BindSet(sold, fmt::format("SELECT COD, SUM(KOL) FROM PROD WHERE DATETIME>='{}' and "
                                     "DATETIME<DATE_ADD('{}', INTERVAL 1 DAY) GROUP BY COD",
                                     from, from));
  for (; !sold.Eof(); sold.MoveNext()) {
    session_.Write(fmt::format("UPDATE TOVAR SET KOL={} WHERE COD={} AND N6 IS NULL", Number(sold.Field(1)),
                               Number(sold.Field(0))));
  }
}

}  // namespace zrt
