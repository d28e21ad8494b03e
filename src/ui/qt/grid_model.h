#pragma once

#include <QAbstractTableModel>

#include "ui/data_grid.h"

namespace zrt {

/// The table that a grid's widget draws: reads the recordset's snapshot cell by cell as it is painted, holds nothing.
class GridModel final : public QAbstractTableModel {
 public:
  explicit GridModel(const DataGrid& grid) : grid_(grid) {}

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  /// Rows or columns are others than before.
  void Renew();
  /// The layout of the same columns changed.
  void RenewHeader();

 private:
  QVariant Alignment(std::size_t column) const;

  const DataGrid& grid_;
  int rows_ = 0;  ///< as the widget knows them: the recordset may be ahead until Renew
  int columns_ = 0;
};

}  // namespace zrt
