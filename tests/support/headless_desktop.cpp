#include "support/headless_desktop.h"

#include <algorithm>
#include <array>

#include "core/errors.h"
#include "core/text.h"

namespace zrt::test {

namespace {

void MoveInGrid(DataGrid& grid, Key::Code code) {
  const int rows = grid.Rows();
  if (rows == 0) return;
  switch (code) {
    case Key::kUp:
      return grid.UserRow(std::max(1, grid.Row() - 1));
    case Key::kDown:
      return grid.UserRow(std::min(rows, grid.Row() + 1));
    case Key::kHome:
      return grid.UserRow(1);
    case Key::kEnd:
      return grid.UserRow(rows);
    default:
      return;
  }
}

void TypeCharacter(TextBox& box, const std::string& character) {
  const auto start = static_cast<std::size_t>(box.SelStart());
  const auto length = static_cast<std::size_t>(box.SelLength());
  const std::string typed = Left(box.Text(), start) + character + Mid(box.Text(), start + length + 1);
  box.UserType(typed, static_cast<int>(start + 1));
}

}  // namespace

void HeadlessDesktop::PressKey(Control& control, Key key) {
  control.UserKey(key);
  if (key.swallow) return;
  if (auto* button = dynamic_cast<Button*>(&control); button != nullptr && key.code == Key::kEnter) button->UserClick();
  if (auto* grid = dynamic_cast<DataGrid*>(&control)) MoveInGrid(*grid, key.code);
  if (auto* box = dynamic_cast<TextBox*>(&control); box != nullptr && key.code == Key::kCharacter) {
    TypeCharacter(*box, key.text);
  }
}

bool Offers(BoxButtons buttons, BoxAnswer answer) {
  const bool says_yes_or_no = answer == BoxAnswer::kYes || answer == BoxAnswer::kNo;
  if (says_yes_or_no || buttons == BoxButtons::kYesNo) return says_yes_or_no && buttons == BoxButtons::kYesNo;
  return answer == BoxAnswer::kOk || buttons == BoxButtons::kOkCancel;
}

Key KeyByName(const std::string& name) {
  static const std::array<std::pair<const char*, Key::Code>, 6> kNamed = {{{"Enter", Key::kEnter},
                                                                           {"Esc", Key::kEscape},
                                                                           {"Up", Key::kUp},
                                                                           {"Down", Key::kDown},
                                                                           {"Home", Key::kHome},
                                                                           {"End", Key::kEnd}}};
  for (const auto& [known, code] : kNamed) {
    if (name == known) return {code, {}};
  }
  if (Length(name) != 1) throw Error("no key is called \"" + name + "\"");
  return {Key::kCharacter, name};
}

}  // namespace zrt::test
