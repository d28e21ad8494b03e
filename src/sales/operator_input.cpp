#include "sales/operator_input.h"

#include "ui/desktop.h"

namespace zrt::sales {

bool HoldsNumber(TextBox& field, const std::string& message) {
  Desktop& desktop = field.Owner().TheDesktop();
  if (desktop.Format().IsNumeric(field.Text())) return true;
  desktop.MsgBox(message, BoxIcon::kCritical);
  field.Text = {};
  field.SetFocus();
  return false;
}

void OnRowChosen(DataGrid& grid, std::function<void()> action) {
  const auto chosen = [&grid, action = std::move(action)] {
    if (grid.Rows() > 0) action();
  };
  grid.DblClick = chosen;
  grid.KeyDown = [chosen](Key& key) {
    if (key.code != Key::kEnter) return;
    key.swallow = true;
    chosen();
  };
}

}  // namespace zrt::sales
