#pragma once

#include "core/session.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// The tab that takes the place of the sales tab in Lite mode: cash operations alone.
class KassaLiteTab {
 public:
  KassaLiteTab(Form& form, Session& session);

  Frame FrameKassaLite;
  Label TextDateLite;
  Button CmdPlusLite;
  MonthView Month1;
  ComboBox Combo3;  ///< hour of the shift change
  Button CmdDatLite;
  Button CmdAllLite;
  TextBox Text4;
  Button CmdTermLite;
  TextBox Text8;
  Button CmdOfcLite;
  TextBox Text9;
  Button CmdDKartLite;
  Button CmdFiskLite;
  Button CmdDelProdLite;
  Label LblInfLite;
  Label LblSumLite;
  DataGrid DataGrid7;

  /// Sets session.ShiftPeriod from TextDateLite and Combo3.
  void CalcShiftPeriodLite();

  /// The first fill at start: the shift's operations and their total. Throws DatabaseError.
  void FirstFill();

  /// The hours that Combo3 offers.
  void FillCombos();

 private:
  void Combo3_Click();
  void FormatKassaLiteGrid();

  Session& session_;
};

}  // namespace zrt
