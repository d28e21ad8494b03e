#pragma once

#include <array>

#include "core/session.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// The sales tab of the main window: what the terminals sell, in one of three big grids with the orders beside it, for
/// a shift or for the whole stored period.
class SalesTab {
 public:
  SalesTab(Form& form, Session& session);

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
  void Combo1_Click();
  void Combo2_Click();
  void CmdPlus_Click();
  void Month0_DateClick();
  void CmdDat_Click();

  /// What every filter begins with: its name for file titles, the label that a query is under way, no sum.
  void BeginQuery(const char* filter_name);
  // Open a grid's set: its base statement, the filter and period pieces, its tail; on the last row. Throw
  // DatabaseError.
  void OpenSales(const std::string& pieces);
  void OpenDeletions(const std::string& pieces);
  void OpenOrderDetail(const std::string& pieces);
  void OpenOrders(const std::string& pieces);
  void Open(Recordset& set, std::string sql, DataGrid& grid, const std::vector<ColumnLayout>& layout);
  /// Opens `sql` on RsTotals and shows its first column, thousandths of money, in LblSum; NULL leaves it empty.
  void ShowTotal(std::string sql);

  Session& session_;
};

}  // namespace zrt
