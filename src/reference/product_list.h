#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ui/controls.h"
#include "ui/data_grid.h"

// What the lists of products share: the catalogue in the main window and the picker.

namespace zrt {

class Desktop;

/// The search that follows typing: goes to the first product of `grid`, in its present sort, whose column `name_column`
/// begins with the text of `find`, whatever the case. When none does, the grid stays on the row where it stood and
/// `find` gets the keyboard. Nothing happens for an empty text and an empty grid. Throws Error for a text with a single
/// quote, which isn't escaped. Enter in the search takes the row where the grid stands, found or not: a search that a
/// scanner types into would have to compare the whole barcode, as CmnFindBar_Click does, and keep Enter from choosing
/// after a miss.
void FindProductByName(TextBox& find, DataGrid& grid, std::string_view name_column);

/// Goes to the product of this name as if it had been typed into `find`, which is empty afterwards whatever happens.
void ShowByName(TextBox& find, DataGrid& grid, std::string_view name_column, const std::string& name);

/// Types `character` into `find` at its cursor, over what is selected there: typing in a list searches it.
void TypeInto(TextBox& find, std::string_view character);

/// The Up and Down keys in the search field: one row back or forward in `grid`, and the field is emptied. At either end
/// the row stays.
void StepFromSearch(TextBox& find, DataGrid& grid, Key::Code code);

/// Asks whether this product is really to be deleted.
bool ConfirmDeletion(Desktop& desktop, std::int32_t cod, const std::string& name);

}  // namespace zrt
