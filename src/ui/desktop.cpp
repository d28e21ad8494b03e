#include "ui/desktop.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <ctime>
#include <iostream>
#include <utility>

#include "core/advice.h"
#include "core/errors.h"

namespace zrt {

std::string WithPlainBreaks(std::string_view text) {
  std::string plain;
  char before = 0;
  for (const char character : text) {
    const bool pair = character == '\r' && before == '\n';
    if (!pair) plain += character == '\r' ? '\n' : character;
    before = character;
  }
  return plain;
}

std::string DetailsOf(const std::exception& error) {
  const auto* failure = dynamic_cast<const DatabaseError*>(&error);
  if (failure == nullptr) return error.what();
  std::string details(AdviceOn(*failure));
  if (!details.empty()) details += "\n\n";
  details += fmt::format("{}\nSQLSTATE {}, {}", failure->Text(), failure->SqlState(), failure->Native());
  if (!failure->Statement().empty()) details += "\n" + failure->Statement();
  return details;
}

BoxAnswer Desktop::MsgBox(const std::string& text, BoxIcon icon, BoxButtons buttons, const std::string& title) {
  return MsgBox(Message{.text = text, .icon = icon, .buttons = buttons, .title = title});
}

BoxAnswer Desktop::MsgBox(Message message) {
  if (message.title.empty()) message.title = ProgramTitle;
  return DoMsgBox(message);
}

void Desktop::TellFailure(const std::string& text, const std::exception& error) {
  NoteFailure(error);
  MsgBox(Message{.text = text, .icon = BoxIcon::kCritical, .details = DetailsOf(error)});
}

void Desktop::TellWritten(Message message, std::string_view path) {
  message.folder = path.substr(0, path.find_last_of("\\/") + 1);
  MsgBox(std::move(message));
}

std::string Desktop::AskPassword(const std::string& prompt, const std::string& title) {
  return DoPasswordBox(prompt, title.empty() ? ProgramTitle : title);
}

std::string Desktop::InputBox(const std::string& prompt, const std::string& title, const std::string& preset) {
  return DoInputBox(prompt, title.empty() ? ProgramTitle : title, preset);
}

void Desktop::Show(Form& form) {
  LoadIfNeeded(form);
  BringForward(form, false);
}

void Desktop::ShowModal(Form& form) {
  LoadIfNeeded(form);
  BringForward(form, true);
  // Its Load or Activate may have hidden it again.
  if (form.visible_) DoModalLoop(form);
}

void Desktop::Hide(Form& form) {
  if (!form.visible_) return;
  TakeAway(form);
}

void Desktop::Unload(Form& form) {
  if (!form.loaded_) return;
  // From here on nobody unloads it a second time, not even its own handler.
  form.loaded_ = false;
  std::erase(loaded_, &form);

  std::exception_ptr failure;
  try {
    form.Unload.Raise();
  } catch (...) {
    // A window that has failed to tidy up still goes away; the failure is reported afterwards.
    failure = std::current_exception();
  }
  if (form.visible_) TakeAway(form);
  DoUnload(form);
  form.RestoreDefinition();
  if (failure) std::rethrow_exception(failure);
}

void Desktop::UnloadAllBut(const Form& form) {
  std::exception_ptr failure;
  const std::vector<Form*> loaded = loaded_;
  for (auto one = loaded.rbegin(); one != loaded.rend(); ++one) {
    if (*one == &form) continue;
    try {
      Unload(**one);
    } catch (...) {
      if (!failure) failure = std::current_exception();
    }
  }
  if (failure) std::rethrow_exception(failure);
}

void Desktop::DropWindows() {
  for (Form* form : std::exchange(loaded_, {})) {
    form->loaded_ = form->visible_ = false;
    DoUnload(*form);
  }
  visible_.clear();
  active_ = nullptr;
}

void Desktop::Leave(Form& form) {
  for (auto* all : {&forms_, &loaded_, &visible_}) std::erase(*all, &form);
  if (active_ == &form) active_ = nullptr;
}

void Desktop::UserAction(const std::function<void()>& handler) {
  if (IsWaiting()) return;
  if (OnUserAction) OnUserAction();
  DoActionBegins();
  Guard(handler);
  DoActionEnds();
}

void Desktop::Guard(const std::function<void()>& handler) {
  try {
    handler();
  } catch (const Stopped&) {  // NOLINT(bugprone-empty-catch): the operator knows
  } catch (const std::exception& error) {
    NoteFailure(error);
    DoRuntimeError(error);
    if (OnRuntimeError) OnRuntimeError();
  }
}

void Desktop::NoteFailure(const std::exception& error) const {
  std::string line = error.what();
  const auto* failure = dynamic_cast<const DatabaseError*>(&error);
  if (failure != nullptr && !failure->Statement().empty()) line += " | " + failure->Statement();
  std::replace_if(
      line.begin(), line.end(), [](char byte) { return byte == '\n' || byte == '\r'; }, ' ');
  std::cerr << fmt::format("{:%Y-%m-%d %H:%M:%S} {}: {}\n", fmt::localtime(std::time(nullptr)),
                           Front() == nullptr ? "-" : Front()->Name(), line);
}

void Desktop::Activated(Form& form) {
  if (active_ == &form || !form.visible_ || !form.loaded_) return;
  Deactivate();
  active_ = &form;
  std::erase(visible_, &form);
  visible_.push_back(&form);
  form.Activate.Raise();
}

void Desktop::Deactivate() {
  // A failure of the form being left must not keep the other from coming.
  if (Form* left = std::exchange(active_, nullptr)) Guard([left] { left->Deactivate.Raise(); });
}

Form* Desktop::FindForm(std::string_view name) const {
  const auto found = std::find_if(forms_.begin(), forms_.end(), [&](const Form* form) { return form->Name() == name; });
  return found == forms_.end() ? nullptr : *found;
}

void Desktop::LoadIfNeeded(Form& form) {
  if (form.loaded_) return;
  if (!form.complete_) throw Error("form " + form.Name() + " was never completed");
  form.loaded_ = true;
  loaded_.push_back(&form);
  try {
    form.Load.Raise();
  } catch (...) {
    form.loaded_ = false;
    std::erase(loaded_, &form);
    form.RestoreDefinition();
    throw;
  }
}

void Desktop::BringForward(Form& form, bool modal) {
  form.visible_ = true;
  std::erase(visible_, &form);
  visible_.push_back(&form);
  DoShow(form, modal);
  if (OnShown) OnShown(form);
  Activated(form);
}

void Desktop::TakeAway(Form& form) {
  form.visible_ = false;
  std::erase(visible_, &form);
  DoHide(form);
  if (active_ == &form) Deactivate();
  // The window behind comes to the front. Its failure is its own, but it is no new action of the operator.
  if (active_ == nullptr && !visible_.empty()) {
    Guard([this] { Activated(*visible_.back()); });
  }
}

StopOffer::StopOffer(Desktop& desktop) : desktop_(desktop) {
  if (desktop_.stop_offers_++ == 0) desktop_.OfferStop(true);
}

StopOffer::~StopOffer() {
  if (--desktop_.stop_offers_ == 0) desktop_.OfferStop(false);
}

void StopOffer::Step() {
  if (desktop_.IsStopWanted()) throw Stopped();
}

}  // namespace zrt
