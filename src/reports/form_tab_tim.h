#pragma once

#include "reports/table_screen.h"

namespace zrt {

/// Takings, or the number of orders, by shift day and hour of the shift.
class FormTabTim final : public TableScreen {
 public:
  FormTabTim(Desktop& desktop, const TableTools& tools);

  PeriodChoice Period;
  CheckBox Check1{*this, "Check1"};  ///< before discounts
  Button CmdHr{*this, "CmdHr"};
  Button CmdChk{*this, "CmdChk"};

 private:
  struct Table;

  void Form_Load() override;
  bool CloseCalendar() override { return Period.CloseCalendar(); }
  void CmdHr_Click();
  void CmdChk_Click();
  void ShowTable(const Table& table);
};

}  // namespace zrt
