#pragma once

#include <string>

#include "core/errors.h"
#include "core/session.h"
#include "sales/sales_statements.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// The tab that takes the place of the sales tab in Lite mode: cash operations alone.
class KassaLiteTab : public FormSection {
 public:
  KassaLiteTab(Form& form, Session& session);

  Frame FrameKassaLite{form_, "FrameKassaLite"};
  Label TextDateLite{form_, "TextDateLite"};
  Button CmdPlusLite{form_, "CmdPlusLite"};
  MonthView Month1{form_, "Month1"};
  ComboBox Combo3{form_, "Combo3"};  ///< hour of the shift change
  Button CmdDatLite{form_, "CmdDatLite"};
  Button CmdAllLite{form_, "CmdAllLite"};
  TextBox Text4{form_, "Text4"};
  Button CmdTermLite{form_, "CmdTermLite"};
  TextBox Text8{form_, "Text8"};
  Button CmdOfcLite{form_, "CmdOfcLite"};
  TextBox Text9{form_, "Text9"};
  Button CmdDKartLite{form_, "CmdDKartLite"};
  Button CmdFiskLite{form_, "CmdFiskLite"};
  Button CmdDelProdLite{form_, "CmdDelProdLite"};
  Label LblInfLite{form_, "LblInfLite"};
  Label LblSumLite{form_, "LblSumLite"};
  DataGrid DataGrid7{form_, "DataGrid7"};

  /// Sets session.ShiftPeriod from TextDateLite and Combo3.
  void CalcShiftPeriodLite();

  /// The first fill at start: the shift's operations and their total. Throws DatabaseError.
  void FirstFill();

  /// The hours that Combo3 offers.
  void FillCombos();

 private:
  void Combo3_Click();
  void CmdPlusLite_Click();
  void Month1_DateClick();
  void CmdDatLite_Click();
  void CmdAllLite_Click();
  void TakeOperation();

  /// Narrows the operations by `filter`, within the shift unless the whole period is on, whose total isn't computed.
  /// `field` is the filter's own, nullptr for one without; the others are cleared. Whatever fails, the operator is told
  /// that the date is wrong.
  void RunFilter(const sales::LiteFilter& filter, TextBox* field);
  void ClearFieldsBut(const TextBox* field);
  void WarnOfDate(const Error& error);

  /// The label that a query is under way, no sum.
  void BeginQuery();
  /// Opens RsKassaLite with the pieces behind its base statement; on the last row. Throws DatabaseError.
  void Open(const std::string& pieces);
  /// Shows the sum of the operations under `condition`, nothing for NULL. Throws DatabaseError.
  void ShowTotal(const std::string& condition);
  void FormatKassaLiteGrid();
  std::string WithinShift() const;

  Desktop& TheDesktop() const { return FrameKassaLite.Owner().TheDesktop(); }

  Session& session_;
};

}  // namespace zrt
