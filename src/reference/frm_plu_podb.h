#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/session.h"
#include "reference/frm_plu.h"
#include "stock/module_reg.h"
#include "stock/product_picker.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// The product picker: finds a product by name or barcode, asks its quantity and price and delivers it to the document
/// that opened it. It stays open for the next product.
class frmPLUpodb final : public Form, public ProductPicker {
 public:
  frmPLUpodb(Desktop& desktop, Session& session, ModuleReg& stock, frmPLU& card);

  /// Deletes a product from the catalogue and all that shows it, as the catalogue's own tab does.
  std::function<void(std::int32_t cod)> DeleteProduct;

  Button CmdCod{*this, "CmdCod"};
  Button CmdName{*this, "CmdName"};
  Button CmdBar{*this, "CmdBar"};
  Button CmdPrice{*this, "CmdPrice"};
  Button CmdKol{*this, "CmdKol"};
  Button CmdVid{*this, "CmdVid"};
  DataGrid DataGrid01{*this, "DataGrid01"};
  TextBox TextFind{*this, "TextFind"};
  Button CmdClearFind{*this, "CmdClearFind"};
  Button CmnFindBar{*this, "CmnFindBar"};
  Label LbllName{*this, "LbllName"};
  TextBox TextKol{*this, "TextKol"};
  TextBox TextPrice{*this, "TextPrice"};
  Button OKButton{*this, "OKButton"};
  Button CmdNewPLU{*this, "CmdNewPLU"};
  Button CmdCopyPLU{*this, "CmdCopyPLU"};
  Button CmdShowPLU{*this, "CmdShowPLU"};
  Button CmdDelPLU{*this, "CmdDelPLU"};

  void OpenFor(std::uint8_t form_code) override;

  /// Reads the catalogue again and goes to the product of this name, as if it had been searched for. Throws
  /// DatabaseError.
  void ShowProduct(const std::string& name);

  std::uint8_t FormCode = 0;   ///< whom to deliver to; see form_code
  std::int32_t PickCod = 0;    ///< the chosen product
  std::int32_t PickKol = 0;    ///< thousandths; 0 for a document that asks no quantity, so not what was typed last
  std::int32_t PickPrice = 0;  ///< thousandths
  std::string PickName;
  std::string PickBar;  ///< "" for a product without a barcode

 private:
  void Form_Load();
  void FormatPickerGrid();
  /// All six sort buttons; the grid stays on its product.
  void SortBy(std::string_view tail);
  void CmdName_Click();

  void TextFind_Change();
  void TextFind_KeyDown(Key& key);
  void DataGrid01_KeyDown(Key& key);
  void ChooseFromGrid();
  void CmnFindBar_Click();
  /// What follows the choice, from either way: shows the product and asks what its document needs. `retail` is in
  /// thousandths.
  void AskFor(std::int32_t cod, const std::string& name, const std::string& barcode, double retail);

  void TextKol_KeyDown(Key& key);
  void TextPrice_KeyDown(Key& key);
  void SendDataToForm();
  void ClearForm(bool refresh = false);
  /// After a delivery or a change of mind the keyboard goes to where the product came from.
  void BackToChoice();

  void CmdDelPLU_Click();
  bool HasRows() const { return rs_picker_.RecordCount() > 0; }
  std::int32_t CurrentCod() const;

  Session& session_;
  ModuleReg& stock_;
  frmPLU& card_;
  Recordset rs_picker_;  ///< RsPicker: the catalogue as the grid shows it
  bool chosen_by_barcode_ = false;
};

}  // namespace zrt
