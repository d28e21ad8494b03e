#pragma once

#include <functional>
#include <string>

#include "ui/controls.h"
#include "ui/data_grid.h"

namespace zrt::sales {

/// Does the field hold a number, as the operator writes them? If it doesn't, `message` comes in a critical box, and the
/// field is cleared and gets the keyboard.
bool HoldsNumber(TextBox& field, const std::string& message);

/// From now on a double click or Enter on a row of `grid` does `action`; on a grid without rows they do nothing.
void OnRowChosen(DataGrid& grid, std::function<void()> action);

}  // namespace zrt::sales
