#pragma once

#include <string>
#include <vector>

#include "reports/period_choice.h"
#include "reports/table_output.h"
#include "ui/form.h"

namespace zrt {

/// A period as the table screens put it into their statements: from the first moment to the last, which isn't in it.
/// Month and day have no leading zeros. 'yyyy-m-d hh:00:00'
struct TablePeriod {
  std::string from;
  std::string to;
};
TablePeriod TablePeriodOf(const ReportSpan& span);

/// The moment of the shift change on `day` as the stock register is asked for it: yyyy/m/d h:00:00.
std::string StockMoment(const Date& day, int hour);

/// What all table screens share: where the table goes, and Esc, which closes an open calendar, then the window.
class TableScreen : public Form {
 public:
  TableScreen(Desktop& desktop, std::string name, const TableTools& tools, bool with_workbook);

  Label Label3{*this, "Label3"};
  TableOutput Output;

 protected:
  virtual void Form_Load() = 0;
  virtual bool CloseCalendar() = 0;

  Session& TheSession() const { return tools_.session; }

 private:
  void Form_KeyDown(Key& key);

  const TableTools tools_;
};

/// What the screens with a row for each person or card and a column for each shift day share besides: the period and
/// the choice of sums before discounts.
class PivotScreen : public TableScreen {
 public:
  PivotScreen(Desktop& desktop, std::string name, const TableTools& tools);

  PeriodChoice Period;
  CheckBox Check1{*this, "Check1"};  ///< before discounts

 protected:
  /// How the table of a screen differs from those of the others.
  struct DayTable {
    std::string statement;  ///< up to the grouping by day, which is joined behind it
    std::string title;
    std::string period_text;  ///< second title
    std::string file_prefix;
    std::vector<std::string> headers;  ///< of the first four columns
    std::string total_header_in_book;
    PivotValue kind;
  };

  void Form_Load() override;
  bool CloseCalendar() override { return Period.CloseCalendar(); }

  /// Runs the two statements of the table and sends it where the operator wants it. Throws DatabaseError, FileError.
  void ShowTable(const DayTable& asked, const ReportSpan& span);

 private:
  /// "№", code, name, total and a column for each shift day of `span`.
  ReportTable PivotByDay(const DayTable& asked, const Recordset& days, const Recordset& totals,
                         const ReportSpan& span) const;
};

}  // namespace zrt
