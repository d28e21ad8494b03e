#include "ui/form.h"

#include <algorithm>
#include <string_view>

#include "core/errors.h"
#include "ui/desktop.h"

namespace zrt {

Form::Form(Desktop& desktop, std::string name)
    : Element(std::move(name)), desktop_(desktop), definition_(FormDefinition::Of(Name())) {
  Caption = definition_.Title();
  desktop_.Join(*this);
}

Form::~Form() {
  desktop_.Leave(*this);
}

void Form::Show() {
  desktop_.Show(*this);
}

void Form::ShowModal() {
  desktop_.ShowModal(*this);
}

void Form::Hide() {
  desktop_.Hide(*this);
}

void Form::Close() {
  desktop_.Unload(*this);
}

Control* Form::FindControl(std::string_view name) const {
  const auto found = by_name_.find(name);
  return found == by_name_.end() ? nullptr : found->second;
}

Timer* Form::FindTimer(std::string_view name) const {
  const auto found =
      std::find_if(timers_.begin(), timers_.end(), [&](const Timer* timer) { return timer->Name() == name; });
  return found == timers_.end() ? nullptr : *found;
}

void Form::Complete() {
  std::string missing;
  for (const ControlDefinition& control : definition_.Controls()) {
    if (FindControl(control.name) == nullptr) missing += " " + control.name;
  }
  if (!missing.empty()) throw Error("form " + Name() + " lacks the controls of its definition:" + missing);

  const auto keep = [](const Element& element) {
    for (PropertyBase* property : element.Properties()) property->KeepAsInitial();
  };
  keep(*this);
  for (const Control* control : controls_) keep(*control);
  complete_ = true;
}

void Form::RestoreDefinition() {
  for (Control* control : controls_) {
    control->Forget();
    for (PropertyBase* property : control->Properties()) property->Reset();
  }
  for (const Timer* timer : timers_) {
    for (PropertyBase* property : timer->Properties()) property->Reset();
  }
  for (PropertyBase* property : Properties()) property->Reset();
}

}  // namespace zrt
