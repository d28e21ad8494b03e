#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/connection.h"
#include "core/regional_format.h"
#include "ui/form.h"

namespace zrt {

enum class BoxIcon { kNone, kCritical, kQuestion, kExclamation, kInformation };
enum class BoxButtons { kOk, kOkCancel, kYesNo };
enum class BoxAnswer { kOk, kCancel, kYes, kNo };

/// A message or question. `title` is the program's when empty.
struct Message {
  std::string text = {};
  BoxIcon icon = BoxIcon::kNone;
  BoxButtons buttons = BoxButtons::kOk;
  std::string title = {};
  std::string details =
      {};  ///< what the shop's helper wants to know, shown on demand; empty for a box without that part
  std::string folder = {};              ///< the box offers to open this folder; empty for none
  std::optional<BoxAnswer> usual = {};  ///< the button that Enter presses; the first one when none is named
};

/// What the failure says to the shop's helper, in lines: the driver's words, SQLSTATE and number, the statement; or the
/// file. Never a connection text.
std::string DetailsOf(const std::exception& error);

/// The text of a box with one "\n" for each break: some texts break their lines by a line feed and a carriage return,
/// some by a carriage return alone.
std::string WithPlainBreaks(std::string_view text);

/// The operator has asked the work under way to stop, and it did so where nothing is lost by it: ends the action
/// without a word. No failure.
class Stopped final : public std::exception {
 public:
  const char* what() const noexcept override { return "stopped by the operator"; }
};

/// The host of all windows: shows forms and boxes and brings what the operator does to the handlers. What is common to
/// all hosts stands here; a host overrides the Do... members.
class Desktop {
 public:
  explicit Desktop(RegionalFormat format) : format_(std::move(format)) {}
  virtual ~Desktop() = default;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  const RegionalFormat& Format() const { return format_; }

  /// Title of boxes that have none of their own.
  std::string ProgramTitle = "ZRT";

  /// Called at the beginning of each action of the operator; the program lets a lost connection be opened again.
  std::function<void()> OnUserAction;
  /// Called after the box of a run-time error; a program that hasn't finished starting ends then.
  std::function<void()> OnRuntimeError;
  /// Called when a form has become visible.
  std::function<void(const Form&)> OnShown;

  /// Ends the program's run with this exit code, once the present action is over.
  virtual void Quit(int code) = 0;

  /// A message or question; returns the button. Closing the box counts as Cancel, No, or OK where that is the only one.
  BoxAnswer MsgBox(const std::string& text, BoxIcon icon = BoxIcon::kNone, BoxButtons buttons = BoxButtons::kOk,
                   const std::string& title = {});
  BoxAnswer MsgBox(Message message);
  /// The fixed message of a handler that has trapped `error`, critical, with the error's details.
  void TellFailure(const std::string& text, const std::exception& error);
  /// The message that a file has been written, with a way to its folder. `path` is the file's, on its drive.
  void TellWritten(Message message, std::string_view path);
  /// Asks for a line of text; "" when the operator cancels.
  std::string InputBox(const std::string& prompt, const std::string& title = {}, const std::string& preset = {});
  /// The same for a password, which isn't shown.
  std::string AskPassword(const std::string& prompt, const std::string& title = {});

  void Show(Form& form);
  void ShowModal(Form& form);
  void Hide(Form& form);
  void Unload(Form& form);
  /// In the reverse order of their loading. A form that fails to tidy up goes all the same, as do those after it; the
  /// first failure is thrown when all are gone.
  void UnloadAllBut(const Form& form);
  /// Drops all windows without a word to their forms: the program is ending.
  void DropWindows();

  /// Used by StopOffer: the work under way can be stopped from here on, or no longer.
  virtual void OfferStop(bool) {}
  /// Lets the windows live for a moment; has the operator asked the work to stop since it was offered?
  virtual bool IsStopWanted() { return false; }

  /// Who makes the calls that wait for the server; nullptr makes them in place.
  virtual ServerWait* TheServerWait() { return nullptr; }

  virtual void SetFocus(Control& control) = 0;
  virtual void Repaint(Control& control) = 0;

  /// Runs what the operator's action causes. A failure ends the handler here: the operator sees one plain box without
  /// database text, earlier statements stay in force, and the program lives. Hosts bring every click, key, timer and
  /// window event through here. While another action waits for the server nothing is run.
  void UserAction(const std::function<void()>& handler);

  /// Writes a failure as one line on the standard error stream, for whoever looks after the program: the moment, the
  /// form in front, SQLSTATE and number, the driver's words, the statement. Every run-time error passes here before its
  /// box is shown, and every failure that TellFailure tells.
  void NoteFailure(const std::exception& error) const;

  /// A form came to the front: raises Deactivate of the one before and its Activate, unless it was in front already.
  /// Hosts call it inside UserAction when the operator brings a window forward; Show, Hide and Unload call it
  /// themselves.
  void Activated(Form& form);
  /// The form in front; nullptr when none is visible.
  Form* Front() const { return visible_.empty() ? nullptr : visible_.back(); }

  /// All forms that exist, loaded or not, by name; nullptr when there is none.
  Form* FindForm(std::string_view name) const;
  const std::vector<Form*>& LoadedForms() const { return loaded_; }  ///< in the order of their loading

 protected:
  virtual BoxAnswer DoMsgBox(const Message& message) = 0;
  virtual std::string DoInputBox(const std::string& prompt, const std::string& title, const std::string& preset) = 0;
  virtual std::string DoPasswordBox(const std::string& prompt, const std::string& title) {
    return DoInputBox(prompt, title, {});
  }
  virtual void DoShow(Form& form, bool modal) = 0;  ///< the form is loaded; make it visible, in front
  virtual void DoModalLoop(Form& form) = 0;         ///< the operator works in the form until IsVisible() is false
  virtual void DoHide(Form& form) = 0;              ///< IsVisible() is false already
  virtual void DoUnload(Form& form) = 0;            ///< the form is hidden; drop its window
  virtual bool IsWaiting() const { return false; }  ///< an action is in the middle of a call to the server
  virtual void DoActionBegins() {}
  virtual void DoActionEnds() {}
  /// A run-time error ended a handler.
  virtual void DoRuntimeError(const std::exception& error) = 0;

 private:
  friend class Form;
  friend class StopOffer;

  void Join(Form& form) { forms_.push_back(&form); }
  void Leave(Form& form);
  /// Runs `handler`; a failure ends it with the plain box.
  void Guard(const std::function<void()>& handler);
  void LoadIfNeeded(Form& form);
  void BringForward(Form& form, bool modal);
  void TakeAway(Form& form);
  void Deactivate();

  RegionalFormat format_;
  int stop_offers_ = 0;
  std::vector<Form*> forms_;
  std::vector<Form*> loaded_;
  std::vector<Form*> visible_;  ///< the front one last
  Form* active_ = nullptr;      ///< the one whose Activate was raised last
};

/// Long work of many steps between any two of which it may end without a loss: a report, an export. While the offer
/// lives, Esc asks for that. One inside another is the same offer.
class StopOffer {
 public:
  explicit StopOffer(Desktop& desktop);
  ~StopOffer();
  StopOffer(const StopOffer&) = delete;
  StopOffer& operator=(const StopOffer&) = delete;

  /// Between two steps. Throws Stopped when the operator wants no more of them.
  void Step();

 private:
  Desktop& desktop_;
};

}  // namespace zrt
