#pragma once

#include <array>
#include <functional>

#include "core/session.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// The product catalogue in the main window: one recordset in two grids, index 0 on the tab "Справочники" and index 1
/// on the tab of the touch panels.
class CatalogueTab {
 public:
  CatalogueTab(Form& form, Session& session);

  Frame FrameSprav;
  std::array<DataGrid, 2> DataGrid1;
  std::array<TextBox, 2> TextFind;
  Button CmdSortName;
  Button CmdSortCod;
  Button CmdSortPrice;
  Button CmdSortBar;
  Button CmdReqr;
  CheckBox CheckUkt;  ///< ticked: the column of classification codes stands in the place of the barcodes
  Button CmdRefrTov;
  Button CmdImportTov;
  Button CmdNew;
  Button CmdCopy;
  Button CmdShow;
  Button CmdDelPLU;
  Button CmdClrAllPLU;
  ProgressBar ProgressBar1;
  Label LblNote;  ///< says that the reference data can't be edited

  /// A product of the grid on the tab of the touch panels was chosen: by double click, by Enter in the grid or in its
  /// search. Raised only while RsProducts stands on a row, which is the product.
  std::function<void()> ChooseForPanel;

  /// Opens the catalogue by name in both grids. In the restricted mode products without a price are left out. Throws
  /// DatabaseError.
  void FirstFill();

  /// The column layout of both grids; to be called after every rebinding of RsProducts.
  void FormatProductGrid();

  /// Takes the editing buttons of the catalogue away, for the restricted mode.
  void ForbidEditing();

 private:
  Session& session_;
};

}  // namespace zrt
