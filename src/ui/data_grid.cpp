#include "ui/data_grid.h"

#include <algorithm>
#include <optional>

#include "core/errors.h"
#include "core/text.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

constexpr int kTwipsPerCharacter = 105;

/// Widths and alignment that suit a column before its screen lays it out.
GridColumn DefaultColumn(const Recordset& set, int field) {
  GridColumn column;
  column.header = set.FieldName(field);
  int characters = 0;
  switch (set.Type(field)) {
    case FieldType::kInteger:
      characters = 7;
      break;
    case FieldType::kDecimal:
    case FieldType::kFloat:
      characters = 9;
      break;
    case FieldType::kDateTime:
      characters = 18;
      break;
    case FieldType::kText:
      characters = 16;
      break;
  }
  const bool number = set.Type(field) != FieldType::kText && set.Type(field) != FieldType::kDateTime;
  column.align = number ? GridColumn::Align::kRight : GridColumn::Align::kLeft;
  column.width = std::max(characters, static_cast<int>(Length(column.header)) + 2) * kTwipsPerCharacter;
  return column;
}

}  // namespace

std::string PropertyText(const std::vector<GridColumn>& columns) {
  std::vector<std::string> headers;
  for (const GridColumn& column : columns) headers.push_back(column.header);
  return PropertyText(headers);
}

class DataGrid::Follower final : public RecordsetObserver {
 public:
  explicit Follower(DataGrid& grid) : grid_(grid) {}
  void PositionChanged(Recordset&) override {
    if (grid_.OnRow) grid_.OnRow();
  }
  void RowsChanged(Recordset&) override {
    if (grid_.OnRows) grid_.OnRows();
  }
  void Gone(Recordset&) override {
    grid_.set_ = nullptr;
    if (grid_.OnRows) grid_.OnRows();
  }

 private:
  DataGrid& grid_;
};

DataGrid::DataGrid(Form& form, std::string name)
    : Control(form, std::move(name), {"QTableView"}), follower_(std::make_unique<Follower>(*this)) {
  Caption = Defined("caption");
}

DataGrid::~DataGrid() {
  OnRow = nullptr;
  OnRows = nullptr;
  Unbind();
}

void DataGrid::Bind(Recordset& set) {
  if (set_ != &set) {
    Unbind();
    set_ = &set;
    set.AddObserver(follower_.get());
  }
  std::vector<GridColumn> columns;
  for (int field = 0; field < set.FieldCount(); ++field) columns.push_back(DefaultColumn(set, field));
  Columns = std::move(columns);
  if (OnRows) OnRows();
}

void DataGrid::Unbind() {
  if (set_ == nullptr) return;
  set_->RemoveObserver(follower_.get());
  set_ = nullptr;
  Columns = {};
  if (OnRows) OnRows();
}

void DataGrid::Layout(std::span<const ColumnLayout> layout) {
  std::vector<GridColumn> columns = Columns();
  for (const ColumnLayout& wanted : layout) {
    for (GridColumn& column : columns) {
      if (column.header != wanted.header) continue;
      column.width = wanted.width;
      column.align = wanted.align;
      column.format = wanted.format;
    }
  }
  Columns = std::move(columns);
}

int DataGrid::Rows() const {
  return set_ == nullptr ? 0 : set_->RecordCount();
}

int DataGrid::Row() const {
  if (Rows() == 0) return 0;
  const int row = set_->Bookmark();
  return row > Rows() ? 0 : row;
}

std::string DataGrid::CellText(int row, int column) const {
  if (set_ == nullptr || column < 0 || column >= static_cast<int>(Columns().size())) {
    throw Error(Name() + " has no such column");
  }
  return set_->At(row, column)
      .Display(Owner().TheDesktop().Format(), Columns()[static_cast<std::size_t>(column)].format);
}

std::string DataGrid::CellText(int row, std::string_view header) const {
  for (std::size_t column = 0; column < Columns().size(); ++column) {
    if (Columns()[column].header == header) return CellText(row, static_cast<int>(column));
  }
  throw Error(Name() + " has no column " + std::string(header));
}

std::string DataGrid::CurrentText(std::string_view header) const {
  return CellText(Row(), header);
}

void DataGrid::Refresh() {
  if (OnRows) OnRows();
}

std::optional<std::string> DataGrid::Ask(std::string_view property) const {
  if (property == "Rows") return std::to_string(Rows());
  if (property == "Row") return std::to_string(Row());
  if (property == "Widths") {
    std::vector<std::string> widths;
    for (const GridColumn& column : Columns()) widths.push_back(std::to_string(column.width));
    return PropertyText(widths);
  }
  return Control::Ask(property);
}

void DataGrid::UserRow(int row) {
  if (IsUsable() && set_ != nullptr && row != Row()) set_->SetBookmark(row);
}

void DataGrid::UserDblClick() {
  if (IsUsable()) DblClick.Raise();
}

}  // namespace zrt
