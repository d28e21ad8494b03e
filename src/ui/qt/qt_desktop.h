#pragma once

#include <QObject>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/drive_map.h"
#include "ui/desktop.h"
#include "ui/qt/server_wait.h"
#include "ui/qt/shortcuts.h"

class QWidget;

namespace zrt {

class FormWindow;

/// The host that shows forms in real windows. It knows kinds of controls and no form: what a window holds is in the
/// form's definition. Needs an application set up by SetUpApplication.
class QtDesktop : public Desktop {
 public:
  /// `drives` fills the lists of drives and folders; it must outlive the desktop.
  QtDesktop(RegionalFormat format, const DriveMap& drives);
  ~QtDesktop() override;

  /// Takes the operator's actions until Quit, or until no form is loaded any more. Returns the exit code.
  int Run();

  void Quit(int code) override;
  QtServerWait* TheServerWait() override { return &server_wait_; }
  void OfferStop(bool offered) override { server_wait_.OfferStop(offered); }
  bool IsStopWanted() override { return server_wait_.IsStopWanted(); }
  void SetFocus(Control& control) override;
  void Repaint(Control& control) override;

 protected:
  BoxAnswer DoMsgBox(const Message& message) override;
  std::string DoInputBox(const std::string& prompt, const std::string& title, const std::string& preset) override;
  std::string DoPasswordBox(const std::string& prompt, const std::string& title) override;
  void DoShow(Form& form, bool modal) override;
  void DoModalLoop(Form& form) override;
  void DoHide(Form& form) override;
  void DoUnload(Form& form) override;
  bool IsWaiting() const override { return server_wait_.IsWaiting(); }
  void DoActionBegins() override { server_wait_.ActionBegins(); }
  void DoActionEnds() override { server_wait_.ActionEnds(); }
  void DoRuntimeError(const std::exception& error) override;

 private:
  FormWindow* WindowOf(const Form& form) const;
  QWidget* FrontWindow() const;
  /// The window above which `form` stays, so that a click on it buries nothing that is unsaved; nullptr for the main
  /// window itself, and before there is one.
  QWidget* MainWindowFor(const Form& form) const;
  ShortcutHost Shortcuts();
  /// Catches up with the window that came to the front while handlers stood still.
  void NoteFront();

  const DriveMap& drives_;
  QtServerWait server_wait_;
  std::map<const Form*, std::unique_ptr<FormWindow>> windows_;
  /// Focus asked for before there was a window.
  std::map<const Form*, const Control*> wanted_focus_;
  /// Windows of unloaded forms, until the events that they are in the middle of are over.
  QObject retired_;
  std::optional<int> exit_code_;
  bool running_ = false;
};

}  // namespace zrt
