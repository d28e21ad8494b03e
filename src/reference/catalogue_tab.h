#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/session.h"
#include "reference/frm_plu.h"
#include "stock/module_reg.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// The product catalogue in the main window: one recordset, RsProducts, in two grids, index 0 on the tab "Справочники"
/// and index 1 on the tab of the touch panels. The search field of an index belongs to the grid of that index.
class CatalogueTab : public FormSection {
 public:
  CatalogueTab(Form& form, Session& session, ModuleReg& stock, frmPLU& card);

  Frame FrameSprav{form_, "FrameSprav"};
  std::array<DataGrid, 2> DataGrid1{ControlArray<DataGrid, 2>(form_, "DataGrid1", 0)};
  std::array<TextBox, 2> TextFind{ControlArray<TextBox, 2>(form_, "TextFind", 0)};
  Button CmdSortName{form_, "CmdSortName"};
  Button CmdSortCod{form_, "CmdSortCod"};
  Button CmdSortPrice{form_, "CmdSortPrice"};
  Button CmdSortBar{form_, "CmdSortBar"};
  Button CmdReqr{form_, "CmdReqr"};
  CheckBox CheckUkt{form_,
                    "CheckUkt"};  ///< ticked: the column of classification codes stands in the place of the barcodes
  Button CmdRefrTov{form_, "CmdRefrTov"};
  Button CmdImportTov{form_, "CmdImportTov"};
  Button CmdNew{form_, "CmdNew"};
  Button CmdCopy{form_, "CmdCopy"};
  Button CmdShow{form_, "CmdShow"};
  Button CmdDelPLU{form_, "CmdDelPLU"};
  Button CmdClrAllPLU{form_, "CmdClrAllPLU"};
  ProgressBar ProgressBar1{form_, "ProgressBar1"};
  Label LblNote{form_, "LblNote"};  ///< says that the reference data can't be edited

  /// A product of the grid on the tab of the touch panels was chosen: by double click, by Enter in the grid or in its
  /// search. Raised only while RsProducts stands on a row, which is the product.
  std::function<void()> ChooseForPanel;
  /// Opens the screen that loads the catalogue from a file.
  std::function<void()> ImportProducts;

  /// Opens the catalogue by name in both grids. In the restricted mode products without a price are left out. Throws
  /// DatabaseError.
  void FirstFill();

  /// The column layout of both grids; to be called after every rebinding of RsProducts.
  void FormatProductGrid();

  /// Goes to the first product whose name begins with TextFind of this index (0 or 1). Throws Error for a text with a
  /// single quote.
  void FindProductByName(std::int16_t index);

  /// Reads the catalogue again in its present sort. Throws DatabaseError.
  void RequeryProducts();

  /// Goes to the product of this name, as if it had been searched for.
  void ShowProduct(const std::string& name);

  /// Deletes every row of the code from TOVAR and reads the catalogue again. Panel keys and the stock register keep
  /// theirs. Throws DatabaseError.
  void DeleteProduct(std::int32_t cod);

  /// Takes the editing buttons of the catalogue away, for the restricted mode.
  void ForbidEditing();

 private:
  void Sort(std::string_view tail);
  void TextFind_Change(int index);
  void TextFind_KeyDown(int index, Key& key);
  void DataGrid1_KeyDown(int index, Key& key);
  /// Enter and double click: the card of the product, or its choice for a panel key.
  void Choose(int index);
  void CmdRefrTov_Click();
  void CmdCopy_Click();
  void CmdShow_Click();
  void CmdDelPLU_Click();
  void CmdClrAllPLU_Click();

  Recordset& Products() { return session_.Pool().RsProducts; }
  bool HasRows() { return Products().RecordCount() > 0; }
  std::int32_t CurrentCod();

  Session& session_;
  ModuleReg& stock_;
  frmPLU& card_;
};

}  // namespace zrt
