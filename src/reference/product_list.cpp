#include "reference/product_list.h"

#include <fmt/format.h>

#include "core/errors.h"
#include "core/text.h"
#include "ui/desktop.h"

namespace zrt {

void FindProductByName(TextBox& find, DataGrid& grid, std::string_view name_column) {
  if (find.Text().empty() || grid.Rows() == 0) return;
  // The search never took a quote; an error is better than another product.
  if (find.Text().find('\'') != std::string::npos) throw Error("a name with a quote can't be searched");
  Recordset& products = *grid.Source();
  const int row = products.Bookmark();
  products.MoveFirst();
  products.Find(name_column, find.Text(), Recordset::Match::kBeginsWith);
  if (!products.Eof()) return;
  products.SetBookmark(row);
  find.SetFocus();
}

void ShowByName(TextBox& find, DataGrid& grid, std::string_view name_column, const std::string& name) {
  struct Emptied {
    TextBox& box;
    ~Emptied() { box.Text = ""; }
  } const emptied{find};
  find.Text = name;
  FindProductByName(find, grid, name_column);
}

void TypeInto(TextBox& find, std::string_view character) {
  const auto start = static_cast<std::size_t>(find.SelStart());
  const auto selected = static_cast<std::size_t>(find.SelLength());
  find.Text = Left(find.Text(), start) + std::string(character) + Mid(find.Text(), start + selected + 1);
  find.SelStart = static_cast<int>(start + Length(character));
  find.SelLength = 0;
}

void StepFromSearch(TextBox& find, DataGrid& grid, Key::Code code) {
  const int row = grid.Row() + (code == Key::kUp ? -1 : 1);
  if (row >= 1 && row <= grid.Rows()) grid.Source()->SetBookmark(row);
  grid.Refresh();
  find.Text = "";
}

bool ConfirmDeletion(Desktop& desktop, std::int32_t cod, const std::string& name) {
  return desktop.MsgBox(fmt::format("Удалить товар '{}', код {}?", name, cod), BoxIcon::kQuestion,
                        BoxButtons::kOkCancel) == BoxAnswer::kOk;
}

}  // namespace zrt
