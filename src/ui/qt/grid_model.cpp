#include "ui/qt/grid_model.h"

#include "core/errors.h"

namespace zrt {

int GridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  const auto column = static_cast<std::size_t>(index.column());
  if (column >= grid_.Columns().size()) return {};
  if (role == Qt::TextAlignmentRole) return Alignment(column);
  if (role != Qt::DisplayRole || index.row() >= grid_.Rows()) return {};
  try {
    return QString::fromStdString(grid_.CellText(index.row() + 1, index.column()));
  } catch (const Error&) {
    // The set was opened with other columns and the screen hasn't bound it yet: the next paint shows it.
    return {};
  }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  const auto column = static_cast<std::size_t>(section);
  if (orientation != Qt::Horizontal || column >= grid_.Columns().size()) return {};
  if (role == Qt::DisplayRole) return QString::fromStdString(grid_.Columns()[column].header);
  if (role == Qt::TextAlignmentRole) return Alignment(column);
  return {};
}

QVariant GridModel::Alignment(std::size_t column) const {
  switch (grid_.Columns()[column].align) {
    case GridColumn::Align::kRight:
      return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    case GridColumn::Align::kCentre:
      return QVariant(Qt::AlignCenter);
    case GridColumn::Align::kLeft:
      break;
  }
  return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
}

void GridModel::Renew() {
  beginResetModel();
  rows_ = grid_.Rows();
  columns_ = static_cast<int>(grid_.Columns().size());
  endResetModel();
}

void GridModel::RenewHeader() {
  if (columns_ > 0) emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
}

}  // namespace zrt
