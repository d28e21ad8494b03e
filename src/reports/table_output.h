#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/session.h"
#include "platform/drive_map.h"
#include "platform/workbook.h"
#include "reports/frm_path.h"
#include "reports/report_table.h"
#include "ui/form.h"

namespace zrt {

/// What the table screens share of the program and the machine. All of it outlives them.
struct TableTools {
  Session& session;
  const DriveMap& drives;
  SpreadsheetProgram& spreadsheet;
  frmPath& path;
};

/// Where the table of a screen goes: into a file of the folder chosen, or as a new workbook before the operator. Owns
/// the controls of that choice and the line that says how far the work is.
class TableOutput : public FormSection {
 public:
  /// `with_workbook`: the screen offers the workbook too (Check3).
  TableOutput(Form& form, const TableTools& tools, bool with_workbook);

  std::optional<CheckBox> Check3;
  Label Label5{form_, "Label5"};
  Label LblPath{form_, "LblPath"};
  Button CmdPath{form_, "CmdPath"};
  Label Label4{form_, "Label4"};

  void Load();

  bool ToWorkbook() const { return Check3 && Check3->Value(); }

  /// Shows how far the work is, before what takes long.
  void ShowWork(const std::string& text);
  void ShowQuery() { ShowWork("обработка запроса ..."); }
  void ShowBuilding() { ShowWork("построение таблицы ..."); }
  void ShowDone() { Label4.Caption = ""; }

  /// Says that there is nothing to show.
  void TellNoData();
  /// Runs what a button makes. Where it was stopped there is no file, and the label says so.
  void Run(const std::function<void()>& work);

  /// Writes the table into a file whose name begins with `prefix` and ends with the present moment, and says where.
  /// Throws FileError.
  void SaveCsv(const std::string& prefix, const std::vector<std::string>& titles, const ReportTable& table);
  /// Makes the table and opens it as a new workbook. Whatever fails on the way ends in silence, without a book.
  void OpenWorkbook(const std::vector<std::string>& titles, const std::function<ReportTable()>& make_table,
                    const SheetLook& look);

 private:
  void Check3_Click();
  void CmdPath_Click();

  const TableTools tools_;
};

}  // namespace zrt
