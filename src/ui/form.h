#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "ui/controls.h"
#include "ui/element.h"
#include "ui/form_definition.h"

namespace zrt {

class Desktop;

/// A screen: a plain class that owns its named controls; a handler is a member function. The object lives as long as
/// the program; unloading it brings its controls back to the state of the definition, and the next Show loads it again.
class Form : public Element {
 public:
  Form(Desktop& desktop, std::string name);
  ~Form() override;

  Property<std::string> Caption{*this, "Caption"};
  Property<int> Height{*this, "Height", 0};  ///< twips; 0 as the definition says
  Property<int> Width{*this, "Width", 0};    ///< the same

  Event<> Load{*this, "Load"};              ///< before the form is shown for the first time, and after it was unloaded
  Event<> Activate{*this, "Activate"};      ///< each time the form comes to the front
  Event<> Deactivate{*this, "Deactivate"};  ///< another form came to the front, or this one was hidden
  Event<> Unload{*this, "Unload"};          ///< the form is going away; its controls still have their values
  Event<Key&> KeyDown{*this, "KeyDown"};    ///< a key that no control of the form swallowed
  Event<> Click{*this, "Click"};            ///< a click on the form itself

  void Show();       ///< not modal; loads it first if need be; a shown form comes to the front
  void ShowModal();  ///< returns when the form is hidden or unloaded
  void Hide();       ///< keeps its state; harmless when hidden
  void Close();      ///< unloads; harmless when not loaded
  bool IsLoaded() const { return loaded_; }
  bool IsVisible() const { return visible_; }

  Desktop& TheDesktop() const { return desktop_; }
  const FormDefinition& Definition() const { return definition_; }

  Control* FindControl(std::string_view name) const;  ///< nullptr when there is none
  Timer* FindTimer(std::string_view name) const;
  const std::vector<Control*>& Controls() const { return controls_; }
  const std::vector<Timer*>& Timers() const { return timers_; }

 protected:
  /// Last line of every form's constructor: throws Error naming each control of the definition that the form lacks.
  void Complete();

 private:
  friend class Control;
  friend class Timer;
  friend class Desktop;

  /// Controls, timers and the form itself get back what the definition says.
  void RestoreDefinition();

  Desktop& desktop_;
  const FormDefinition& definition_;
  std::vector<Control*> controls_;
  std::vector<Timer*> timers_;
  std::map<std::string, Control*, std::less<>> by_name_;
  bool complete_ = false;
  bool loaded_ = false;
  bool visible_ = false;
};

/// A part of a form in a class of its own, with its controls and what they do. They stand as in a form:
/// `Button CmdDat{form_, "CmdDat"};`
class FormSection {
 protected:
  /// `form` must outlive the section.
  explicit FormSection(Form& form) : form_(form) {}

  Desktop& TheDesktop() const { return form_.TheDesktop(); }

  Form& form_;
};

}  // namespace zrt
