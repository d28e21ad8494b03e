#pragma once

#include <array>

#include "core/session.h"
#include "platform/drive_map.h"
#include "sales/sales_statements.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// The sales tab of the main window: what the terminals sell, in one of three big grids with the orders beside it, for
/// a shift or for the whole stored period.
class SalesTab {
 public:
  /// `drives`: where the saved tables go; they must outlive the tab.
  SalesTab(Form& form, Session& session, const DriveMap& drives);

  Frame FrameProd;
  std::array<Button, 3> CmdDG;  ///< sales, deletions, order detail
  DataGrid DataGrid3;           ///< sales
  DataGrid DataGrid11;          ///< deletions
  DataGrid DataGrid2;           ///< order detail
  DataGrid DataGrid4;           ///< orders
  Label TextDate;               ///< day of the shift, dd.mm.yyyy, or "весь период"
  Button CmdPlus;
  MonthView Month0;
  ComboBox Combo1;  ///< hour of the shift change
  ComboBox Combo2;  ///< excise filter
  Button CmdDat;
  Button CmdAll;
  Label Label19;
  TextBox Text7;
  Button CmdTerm;
  TextBox Text3;
  Button CmdOfc;
  TextBox Text1;
  Button CmdFiltr;
  TextBox Text2;
  Button CmdFilCheck;
  TextBox Text5;
  Button CmdDKart;
  Button CmdNOpl;
  CheckBox CheckFP1;
  CheckBox CheckFP2;
  Button CmdFisk;
  Button CmdFileCSV;
  DirListBox Dir1;
  DriveListBox Drive1;
  Label LblInf;
  Label LblSum;
  Label LblKol;

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

  /// What every filter begins with: its name for file titles, the label that a query is under way, no sum.
  void BeginQuery(std::string_view filter_name);
  /// Narrows the big grid and the orders by `filter`, within the shift unless the whole period is on, shows the total
  /// and what is shown: the date and `suffix`. `field` is the filter's own, the others are cleared. Throws
  /// DatabaseError.
  void RunFilter(const sales::Filter& filter, const TextBox* field, std::string_view suffix = "");
  void FilterByField(const sales::Filter& filter, TextBox& field);
  void ClearFieldsBut(const TextBox* kept);

  // Open a grid's set: its base statement, the filter and period pieces, its tail; on the last row. Throw
  // DatabaseError.
  void OpenSales(const std::string& pieces);
  void OpenDeletions(const std::string& pieces);
  void OpenOrderDetail(const std::string& pieces);
  void OpenOrders(const std::string& pieces);
  void Open(Recordset& set, std::string sql, DataGrid& grid, const std::vector<ColumnLayout>& layout);
  /// Opens `sql` on RsTotals and shows its first column, thousandths of money, in LblSum, and its second one,
  /// thousandths of a unit, in LblKol. NULL, and a column that isn't there, leave the label empty.
  void ShowTotal(std::string sql);

  /// Writes the big grid's table into the folder chosen, or says that there is nothing to write. Throws DatabaseError,
  /// FileError, TypeMismatch; no half file is left then.
  void SaveTable();
  /// The title line's text in the file of the sold lines; `file_name` is the name without extension.
  std::string SalesTitle(const std::string& file_name);
  void ShowFolders(bool shown);

  Desktop& TheDesktop() const { return form_.TheDesktop(); }

  Form& form_;
  Session& session_;
  const DriveMap& drives_;
};

}  // namespace zrt
