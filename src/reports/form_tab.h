#pragma once

#include <array>

#include "reports/table_screen.h"

namespace zrt {

/// Takings by waiter or cashier and shift day.
class FormTab final : public PivotScreen {
 public:
  FormTab(Desktop& desktop, const TableTools& tools);

  std::array<OptionButton, 2> Option1{ControlArray<OptionButton, 2>(*this, "Option1", 0)};  ///< waiters, cashiers
  Button CmdTab{*this, "CmdTab"};

 private:
  void Form_Load() override;
  void CmdTab_Click();
};

/// Lines and sum of an average order by waiter or cashier and shift day.
class FormTabChk final : public PivotScreen {
 public:
  FormTabChk(Desktop& desktop, const TableTools& tools);

  std::array<OptionButton, 2> Option1{ControlArray<OptionButton, 2>(*this, "Option1", 0)};  ///< waiters, cashiers
  Button CmdTab{*this, "CmdTab"};

 private:
  void Form_Load() override;
  void CmdTab_Click();
};

/// Takings by discount card and shift day; sales without a card stand under the code 0.
class FormTabDk final : public PivotScreen {
 public:
  FormTabDk(Desktop& desktop, const TableTools& tools);

  Button CmdDisc{*this, "CmdDisc"};

 private:
  void CmdDisc_Click();
};

}  // namespace zrt
