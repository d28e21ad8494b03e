#pragma once

#include <array>
#include <string>

#include "reports/table_screen.h"
#include "stock/module_reg.h"

namespace zrt {

/// What is in stock at the end of a shift by the register, with prices and what was paid for the goods.
class FormTabOst final : public TableScreen {
 public:
  FormTabOst(Desktop& desktop, const TableTools& tools, ModuleReg& stock);

  ShiftHourChoice Hours;
  DayChoice Day;
  std::array<OptionButton, 4> Option1{ControlArray<OptionButton, 4>(*this, "Option1", 0)};  ///< order of the products
  CheckBox Check1{*this, "Check1"};  ///< without those of balance 0
  Button CmdOst{*this, "CmdOst"};

 private:
  void Form_Load() override;
  bool CloseCalendar() override { return Day.CloseCalendar(); }
  void CmdOst_Click();

  /// The table for a file or for a workbook, which say a few texts differently.
  ReportTable MakeTable(const Recordset& products, const std::string& moment, bool for_book);

  ModuleReg& stock_;
};

}  // namespace zrt
