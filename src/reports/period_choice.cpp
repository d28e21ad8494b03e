#include "reports/period_choice.h"

#include <fmt/format.h>

#include <optional>

#include "core/numbers.h"
#include "core/shift_hour.h"
#include "ui/desktop.h"

namespace zrt {

ShiftHourChoice::ShiftHourChoice(Form& form, Session& session) : FormSection(form), session_(session) {
  Combo1.Click = [this] { Combo1_Click(); };
}

void ShiftHourChoice::Load() {
  Combo1.Items = ShiftHours();
  Combo1.Text = "";
}

void ShiftHourChoice::Show(const std::string& stored) {
  Combo1.Text = stored;
  Label1.Caption = "с  " + stored + ":00:00";
  Label2.Caption = "по  " + stored + ":00:00";
}

void ShiftHourChoice::ReadStored() {
  if (const std::optional<std::string> hour = ReadShiftHour(session_)) return Show(*hour);
  Show("00");
  Combo1.Text = "0";
}

std::optional<int> ShiftHourChoice::Hour() const {
  if (Combo1.Text().empty()) {
    TheDesktop().MsgBox("Не установлено начало смены!!!", BoxIcon::kCritical);
    return std::nullopt;
  }
  return ToInt16(session_.Format().ToNumber(Combo1.Text()));
}

void ShiftHourChoice::Combo1_Click() {
  StoreShiftHour(session_, Combo1.Text());
  // Three blanks here where the hour that was stored before shows with two: the labels go into files as they stand.
  const std::string hour = fmt::format("{:0>2}:00:00", Combo1.Text());
  Label1.Caption = "с   " + hour;
  Label2.Caption = "по   " + hour;
  if (Changed) Changed();
}

DayChoice::DayChoice(Form& form, const RegionalFormat& format, const std::string& number)
    : LDate(form, "LDate" + number), CmdPlus(form, "CmdPlus" + number), Month(form, "Month" + number), format_(format) {
  CmdPlus.Click = [this] {
    Month.Value = day_;
    Month.Visible = true;
  };
  Month.DateClick = [this] {
    Set(Month.Value());
    Month.Visible = false;
    if (Picked) Picked();
  };
}

void DayChoice::Set(const Date& day) {
  day_ = day;
  ShowDay();
}

void DayChoice::ShowDay() {
  LDate.Caption = format_.DateText(day_);
}

bool DayChoice::CloseCalendar() {
  if (!Month.Visible()) return false;
  Month.Visible = false;
  CmdPlus.SetFocus();
  return true;
}

PeriodChoice::PeriodChoice(Form& form, Session& session)
    : FormSection(form),
      Hours(form, session),
      First(form, session.Format(), "1"),
      Last(form, session.Format(), "2"),
      session_(session) {
  Hours.Changed = [this] { Last.ShowDay(); };
  First.Picked = [this] { Month1_DateClick(); };
}

void PeriodChoice::SetLatestShift() {
  const Date today = session_.TheClock().Now().date;
  First.Set(AddDays(today, -1));
  Last.Set(today);
}

std::optional<ReportSpan> PeriodChoice::Span() const {
  const std::optional<int> hour = Hours.Hour();
  if (!hour) return std::nullopt;
  if (AddDays(First.Day(), 1) > Last.Day()) {
    TheDesktop().MsgBox("Неверно выбран интервал дат!!", BoxIcon::kCritical);
    return std::nullopt;
  }
  return ReportSpan{*hour, First.Day(), Last.Day()};
}

std::string PeriodChoice::Text() const {
  return "за период " + Hours.Label1.Caption() + " " + First.LDate.Caption() + " " + Hours.Label2.Caption() + " " +
         Last.LDate.Caption();
}

void PeriodChoice::Month1_DateClick() {
  Last.Set(AddDays(First.Day(), 1));
  Last.CmdPlus.SetFocus();
}

}  // namespace zrt
