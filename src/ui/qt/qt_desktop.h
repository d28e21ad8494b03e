#pragma once

#include <map>
#include <memory>
#include <optional>

#include "platform/drive_map.h"
#include "ui/desktop.h"

namespace zrt {

class FormWindow;

/// The host that draws with Qt. Knows no form and no rule of a screen: it builds the window that a form's definition
/// describes and binds each control to the widget of its name.
class QtDesktop final : public Desktop {
 public:
  /// `drives` lists the folders for the program's lists of drives and folders; it must outlive the desktop.
  QtDesktop(RegionalFormat format, const DriveMap& drives);
  ~QtDesktop() override;

  /// Handles events until Quit. Returns the exit code.
  int Run();
  void Quit(int code) override;

  void SetFocus(Control& control) override;
  void Repaint(Control& control) override;

 protected:
  BoxAnswer DoMsgBox(const std::string& text, BoxIcon icon, BoxButtons buttons, const std::string& title) override;
  std::string DoInputBox(const std::string& prompt, const std::string& title, const std::string& preset) override;
  void DoShow(Form& form, bool modal) override;
  void DoModalLoop(Form& form) override;
  void DoHide(Form& form) override;
  void DoUnload(Form& form) override;
  void DoRuntimeError(const std::exception& error) override;

 private:
  FormWindow* WindowOf(const Form& form) const;

  const DriveMap& drives_;
  std::map<const Form*, std::unique_ptr<FormWindow>> windows_;
  std::optional<int> exit_code_;
};

}  // namespace zrt
