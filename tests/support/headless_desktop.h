#pragma once

#include <optional>
#include <string>

#include "support/fixed_clock.h"
#include "ui/data_grid.h"
#include "ui/desktop.h"

namespace zrt::test {

/// A host without windows: forms are shown by being marked so, the keyboard's place is remembered, and keys do to the
/// controls what a toolkit's widgets do. Boxes and modal forms are answered by the two hosts built on it.
class HeadlessDesktop : public Desktop {
 public:
  HeadlessDesktop() : Desktop(RegionalFormat{}) {}

  Control* Focused() const { return focused_; }
  std::optional<int> ExitCode() const { return exit_code_; }

  /// What is disabled doesn't take the keyboard.
  void SetFocus(Control& control) override { focused_ = control.IsEnabled() ? &control : focused_; }
  void Repaint(Control&) override {}
  void Quit(int code) override { exit_code_ = code; }

  /// Steps of stoppable work after which the operator presses Esc; below 0 never.
  int StopAfter = -1;
  bool IsStopWanted() override { return StopAfter >= 0 && StopAfter-- == 0; }

  /// A key on a control: the handlers first, then, unless they swallowed it, what the widget does with it.
  void PressKey(Control& control, Key key);

 protected:
  void DoShow(Form&, bool) override {}
  void DoHide(Form&) override {}
  void DoUnload(Form&) override {}

  std::optional<int> exit_code_;

 private:
  Control* focused_ = nullptr;
};

/// Has a box with these buttons the one that gives this answer?
bool Offers(BoxButtons buttons, BoxAnswer answer);

/// The key that a script names: Enter, Esc, Up, Down, Home, End or a character. Throws Error for anything else.
Key KeyByName(const std::string& name);

}  // namespace zrt::test
