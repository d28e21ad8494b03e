#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/session.h"
#include "reports/report_period.h"
#include "ui/controls.h"
#include "ui/form.h"

namespace zrt {

/// The choice of the hour at which the shift changes: the list of hours and the two labels that say from when and until
/// when a day counts. Choosing an hour stores it for the whole shop at once.
class ShiftHourChoice : public FormSection {
 public:
  ShiftHourChoice(Form& form, Session& session);

  ComboBox Combo1{form_, "Combo1"};
  Label Label1{form_, "Label1"};
  Label Label2{form_, "Label2"};

  /// An hour was chosen and stored.
  std::function<void()> Changed;

  /// Fills the list and leaves it without a choice.
  void Load();
  /// Shows the stored hour as the settings hold it.
  void Show(const std::string& stored);
  /// Reads the stored hour and shows it; without one the day begins at midnight. Throws DatabaseError.
  void ReadStored();

  /// The hour chosen; nothing, after a message, when there is none. Throws TypeMismatch for one that is no number.
  std::optional<int> Hour() const;

 private:
  void Combo1_Click();

  Session& session_;
};

/// The choice of a day by a calendar that opens under its button. Its controls are LDate, CmdPlus and Month with the
/// same number behind.
class DayChoice {
 public:
  DayChoice(Form& form, const RegionalFormat& format, const std::string& number);

  Label LDate;
  Button CmdPlus;
  MonthView Month;

  std::function<void()> Picked;

  const Date& Day() const { return day_; }
  void Set(const Date& day);
  /// Writes the label anew.
  void ShowDay();
  /// Takes an open calendar away; false when it isn't open.
  bool CloseCalendar();

 private:
  const RegionalFormat& format_;
  Date day_;
};

/// The choice of a run of shifts: the hour, the day on which the first shift begins and the day on which the last one
/// closes.
class PeriodChoice : public FormSection {
 public:
  PeriodChoice(Form& form, Session& session);

  ShiftHourChoice Hours;
  DayChoice First;
  DayChoice Last;

  /// Yesterday and today.
  void SetLatestShift();

  /// What is asked for; nothing, after a message, when there is no hour or the first shift closes later than the end.
  std::optional<ReportSpan> Span() const;

  /// "за период с  8:00:00 14.11.2026 по  8:00:00 15.11.2026"
  std::string Text() const;

  bool CloseCalendar() { return First.CloseCalendar() || Last.CloseCalendar(); }

 private:
  void Month1_DateClick();

  Session& session_;
};

}  // namespace zrt
