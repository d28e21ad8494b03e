#pragma once

#include <array>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/session.h"
#include "platform/drive_map.h"
#include "sales/sales_statements.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// The sales tab of the main window: what the terminals sell, in one of three big grids with the orders beside it, for
/// a shift or for the whole stored period.
class SalesTab : public FormSection {
 public:
  /// `drives`: where the saved tables go; they must outlive the tab.
  SalesTab(Form& form, Session& session, const DriveMap& drives);

  Frame FrameProd{form_, "FrameProd"};
  std::array<Button, 3> CmdDG{ControlArray<Button, 3>(form_, "CmdDG", 0)};  ///< sales, deletions, order detail
  DataGrid DataGrid3{form_, "DataGrid3"};                                   ///< sales
  DataGrid DataGrid11{form_, "DataGrid11"};                                 ///< deletions
  DataGrid DataGrid2{form_, "DataGrid2"};                                   ///< order detail
  DataGrid DataGrid4{form_, "DataGrid4"};                                   ///< orders
  Label TextDate{form_, "TextDate"};  ///< day of the shift, dd.mm.yyyy, or "весь период"; so in files too
  Button CmdPlus{form_, "CmdPlus"};
  MonthView Month0{form_, "Month0"};
  ComboBox Combo1{form_, "Combo1"};  ///< hour of the shift change
  ComboBox Combo2{form_, "Combo2"};  ///< excise filter
  Button CmdDat{form_, "CmdDat"};
  Button CmdAll{form_, "CmdAll"};
  Label Label19{form_, "Label19"};
  TextBox Text7{form_, "Text7"};
  Button CmdTerm{form_, "CmdTerm"};
  TextBox Text3{form_, "Text3"};
  Button CmdOfc{form_, "CmdOfc"};
  TextBox Text1{form_, "Text1"};
  Button CmdFiltr{form_, "CmdFiltr"};
  TextBox Text2{form_, "Text2"};
  Button CmdFilCheck{form_, "CmdFilCheck"};
  TextBox Text5{form_, "Text5"};
  Button CmdDKart{form_, "CmdDKart"};
  Button CmdNOpl{form_, "CmdNOpl"};
  CheckBox CheckFP1{form_, "CheckFP1"};
  CheckBox CheckFP2{form_, "CheckFP2"};
  Button CmdFisk{form_, "CmdFisk"};
  Button CmdFileCSV{form_, "CmdFileCSV"};
  DirListBox Dir1{form_, "Dir1"};
  DriveListBox Drive1{form_, "Drive1"};
  Label LblInf{form_, "LblInf"};
  Label LblSum{form_, "LblSum"};
  Label LblKol{form_, "LblKol"};

  int CurrentGrid = 0;   ///< the big grid: 0 sales, 1 deletions, 2 order detail
  int ExciseFilter = 0;  ///< 0 all, 1 alcohol, 2 cigarettes, 3 no excise

  /// Name of the last filter, for the names of files.
  std::string_view FilterName() const { return filter_->word; }

  /// Sets session.ShiftPeriod from TextDate and Combo1.
  void CalcShiftPeriod();

  /// The first fill at start: deletions and order detail empty, sales and orders of the shift, their total. Throws
  /// DatabaseError.
  void FirstFill();

  /// The items that Combo1 (hours) and Combo2 (excise classes) offer, with "Всего" chosen.
  void FillCombos();

 private:
  /// Shows the big grid `index` (0 sales, 1 deletions, 2 order detail) with the filters that fit it; `load` also opens
  /// its set anew, for the shift or the whole period, whichever is on.
  void DG_Swith(int index, bool load);

  void Combo1_Click();
  void Combo2_Click();
  void CmdPlus_Click();
  void Month0_DateClick();
  void CmdDat_Click();
  void CmdAll_Click();
  void OpenWholePeriod();
  void CmdTerm_Click();
  void CmdOfc_Click();
  void CmdFiltr_Click();
  void CmdDKart_Click();
  void CmdNOpl_Click();
  void CmdFisk_Click();
  void CmdFilCheck_Click();
  void CmdFileCSV_Click();
  void Dir1_KeyDown(Key& key);
  void Drive1_Change();

  /// Enter in a field is the click of its button; Esc there and on CmdFiltr puts the window away, and no key brings it
  /// back.
  void FieldKey(Key& key, const std::function<void()>& click);

  // What a double click or Enter takes over from the current row.
  void TakeSoldLine();
  void TakeDeletion();
  void OpenOrderOf(const DataGrid& grid);

  /// What every filter begins with: it becomes the last one, the label says that a query is under way, no sum.
  void BeginQuery(const sales::Filter& filter);
  /// Narrows the big grid and the orders by `filter`, within the shift unless the whole period is on, shows the total
  /// and what is shown: the date and `suffix`. Clears the fields of other filters. Throws DatabaseError.
  void RunFilter(const sales::Filter& filter, std::string_view suffix = "");
  /// The same for a filter with a field, which must hold a number.
  void FilterByField(const sales::Filter& filter);
  TextBox& Box(sales::Field field);
  void ClearFieldsBut(std::initializer_list<std::optional<sales::Field>> kept);

  // Open a grid's set: its base statement, the filter and period pieces, its tail; on the last row. Throw
  // DatabaseError.
  void OpenSales(const std::string& pieces);
  void OpenDeletions(const std::string& pieces);
  void OpenOrderDetail(const std::string& pieces);
  void OpenOrders(const std::string& pieces);
  void Open(Recordset& set, const std::string& sql, DataGrid& grid, std::span<const ColumnLayout> layout);
  /// Opens `sql` on RsTotals and shows its first column, thousandths of money, in LblSum, and its second one,
  /// thousandths of a unit, in LblKol. NULL, and a column that isn't there, leave the label empty.
  void ShowTotal(const std::string& sql);

  /// Writes the big grid's table into the folder chosen, or says that there is nothing to write. Throws DatabaseError,
  /// FileError, TypeMismatch; no half file is left then.
  void SaveTable();
  /// The title line's text in the file of the sold lines; `file_name` is the name without extension.
  std::string SalesTitle(const std::string& file_name);
  void ShowFolders(bool shown);

  const sales::Filter* filter_ = &sales::kOfShift;  ///< the last one
  Session& session_;
  const DriveMap& drives_;
};

}  // namespace zrt
