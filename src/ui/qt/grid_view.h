#pragma once

#include <QTableView>

#include "ui/data_grid.h"
#include "ui/qt/control_view.h"
#include "ui/qt/grid_model.h"

class QLabel;

namespace zrt {

/// Draws a grid: fixed row height, whole rows, no sorting of its own. The widget's current row and the recordset's follow
/// each other.
class GridView final : public ControlView {
 public:
  GridView(ViewContext context, DataGrid& control, QTableView* widget);

  void Detach() override;

 protected:
  void ShowOwn(const PropertyBase& property) override;
  bool OwnKey(const Key& key) override;

 private:
  void PutCaptionAbove();
  void ShowColumns();
  void ShowRows();
  void ShowRow();

  DataGrid& control_;
  QTableView* widget_;
  QLabel* caption_ = nullptr;
  GridModel model_;
  bool showing_ = false;  ///< the widget is being told, so what it reports isn't the operator's doing
};

}  // namespace zrt
