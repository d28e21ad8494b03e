#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/recordset.h"
#include "ui/controls.h"

namespace zrt {

/// How a grid shows one column of its recordset.
struct GridColumn {
  enum class Align { kLeft, kCentre, kRight };

  std::string header;
  std::string format;  ///< "0.00", "0.000" or "" for the value as it is
  int width = 0;       ///< twips (1/1440 inch); 0 hides the column
  Align align = Align::kLeft;
  friend bool operator==(const GridColumn&, const GridColumn&) = default;
};

std::string PropertyText(const std::vector<GridColumn>& columns);  ///< the headers

/// What a screen's format routine says of a column; columns that it doesn't name keep what they have.
struct ColumnLayout {
  std::string_view header;
  int width;  ///< twips
  GridColumn::Align align;
  std::string_view format{};
};

/// Shows a recordset without copying it; the grid's current row is the recordset's. While the recordset is closed the
/// grid is empty.
class DataGrid final : public Control {
 public:
  DataGrid(Form& form, std::string name);
  ~DataGrid() override;

  Property<std::string> Caption{*this, "Caption"};              ///< heading above the grid; "" for none
  Property<std::vector<GridColumn>> Columns{*this, "Columns"};  ///< one per column of the recordset
  Event<> DblClick{*this, "DblClick"};
  /// The binding, or the rows of the recordset, changed: only views listen.
  std::function<void()> OnRows;
  /// The current row changed: only views listen.
  std::function<void()> OnRow;

  /// Shows `set` from now on (the same one again: after it was reopened), with a column per field under the field's
  /// name, numbers at the right, widths that suit the types.
  void Bind(Recordset& set);
  /// Shows nothing.
  void Unbind();
  Recordset* Source() const { return set_; }

  /// Applies the layout to the columns with these headers; unknown headers are passed over.
  void Layout(std::span<const ColumnLayout> layout);

  int Rows() const;  ///< rows of the bound set, 0 without one
  int Row() const;   ///< current row from 1; 0 when the set stands before its start, past its end or is empty
  /// What the cell shows; row from 1, column from 0, or by header. Throws Error when there is none.
  std::string CellText(int row, int column) const;
  std::string CellText(int row, std::string_view header) const;
  /// The same for the current row. Throws Error without one.
  std::string CurrentText(std::string_view header) const;

  /// Draws the grid again from the recordset.
  void Refresh();

  /// First row that the window shows, from 1; the view keeps it true.
  Property<int> FirstRow{*this, "FirstRow", 1};

  void UserRow(int row);  ///< the operator went to row `row`, from 1
  void UserDblClick() override;
  void Forget() override { Unbind(); }
  /// Knows also "Rows", "Row" and "Widths" (twips, column by column).
  std::optional<std::string> Ask(std::string_view property) const override;

 private:
  class Follower;
  Recordset* set_ = nullptr;
  std::unique_ptr<Follower> follower_;
};

}  // namespace zrt
