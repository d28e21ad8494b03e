#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "reports/table_screen.h"
#include "stock/module_reg.h"
#include "stock/product_picker.h"

namespace zrt {

/// What came in and went out by the register: one product document by document, or the turnover of all.
class FormTabRun final : public TableScreen {
 public:
  FormTabRun(Desktop& desktop, const TableTools& tools, ModuleReg& stock, ProductPicker& picker);

  PeriodChoice Period;
  Button CmdTov{*this, "CmdTov"};
  Label LblCod{*this, "LblCod"};
  Label LblTov{*this, "LblTov"};
  Button CmdRun{*this, "CmdRun"};
  Button CmdRunAll{*this, "CmdRunAll"};

 private:
  void Form_Load() override;
  bool CloseCalendar() override { return Period.CloseCalendar(); }
  void CmdRun_Click();
  void CmdRunAll_Click();
  /// A product was picked.
  void BroadcastReciever(std::int32_t cod);

  ReportTable DocumentTable(const Recordset& documents, std::int32_t cod, const std::string& from);
  ReportTable TurnoverTable(const Recordset& turnover, const std::string& from, const std::string& to);
  /// Sends the table where the operator wants it; `blanks` are the separators before a title of the file.
  void Send(const std::string& prefix, const std::string& title, const ReportSpan& span, const std::string& blanks,
            const std::function<ReportTable()>& make_table, const SheetLook& look);

  ModuleReg& stock_;
  ProductPicker& picker_;
  std::optional<std::int32_t> cod_;  ///< product chosen
};

}  // namespace zrt
