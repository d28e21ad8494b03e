#pragma once

#include <cstdint>
#include <string>

#include "core/session.h"
#include "stock/module_reg.h"
#include "stock/product_picker.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// The whole stock register, or the posted movements of one product.
class FormJrnl final : public Form {
 public:
  FormJrnl(Desktop& desktop, Session& session, ModuleReg& stock, ProductPicker& picker);

  DataGrid DataGrid88{*this, "DataGrid88"};
  Button CmdTov{*this, "CmdTov"};
  Label LblCod{*this, "LblCod"};
  Label LblTov{*this, "LblTov"};
  CheckBox CheckRun{*this, "CheckRun"};  ///< narrows the list to the product

  /// Takes the product of the filter. Throws DatabaseError.
  void BroadcastReciever(std::int32_t cod, std::int32_t kol, std::int32_t price);

 private:
  void Form_Activate();
  void CheckRun_Click();
  /// `condition`: "" for the whole register.
  void OpenList(const std::string& condition);
  void FormatGrid();

  Session& session_;
  Recordset register_;
};

}  // namespace zrt
