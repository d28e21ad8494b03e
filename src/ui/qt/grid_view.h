#pragma once

#include <QHelpEvent>
#include <QLabel>
#include <QTableView>
#include <QTimer>

#include "ui/data_grid.h"
#include "ui/qt/column_widths.h"
#include "ui/qt/control_view.h"
#include "ui/qt/grid_model.h"

namespace zrt {

/// A grid: follows the recordset's current row and moves it, keeps FirstRow true. The recordset may be walked from end
/// to end by a handler; the view catches up once, when the handler is done.
class GridView final : public ControlView {
 public:
  GridView(DataGrid& grid, QTableView* table);

  void Show(const PropertyBase& property) override;

 protected:
  bool KeyLeft(const Key& key) override;
  void BeforeInput() override { CatchUp(); }
  void LetGo() override;
  void ShowVisible(bool visible) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ShowCaption();
  void ShowColumns();
  void FitColumns();
  /// Again when the screen has chosen the row that it shows, or the operator has scrolled on: other texts are in sight
  /// then.
  void FitSoon(int milliseconds);
  /// What the header and the texts in sight need in a column.
  ColumnRoom RoomOf(int column) const;
  /// The name under which widths drawn by hand are kept: they belong to these very columns.
  QString WidthsKey() const;
  bool ShowKeptWidths();
  void KeepWidths() const;
  /// Rows and header get heights that fill the table, so that scrolled to its end it begins with a whole row.
  void FitHeights();
  /// Shows the text under the pointer whole where its cell cuts it.
  bool ShowCutText(const QHelpEvent& help);
  void ShowFirstRow();
  void KeepFirstRow();
  /// Rows changed: the model must not serve rows that are gone, so this doesn't wait.
  void RowsChanged();
  void RowChanged();
  void CatchUp();
  void WentTo(const QModelIndex& index);

  DataGrid& grid_;
  QTableView* table_;
  GridModel model_;
  QLabel* heading_ = nullptr;
  bool late_ = false;  ///< the current row has changed since the table last showed it
  QTimer fit_;
  std::vector<int> needed_;  ///< the most that each column has needed of these rows, so that scrolling narrows none
  bool busy_ = false;        ///< the view itself moves the table
  int row_height_;
  int header_height_;
};

}  // namespace zrt
