#include "ui/element.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace zrt {

namespace {

template <class T>
T* ByName(const std::vector<T*>& all, std::string_view name) {
  const auto found = std::find_if(all.begin(), all.end(), [&](const T* one) { return one->Name() == name; });
  return found == all.end() ? nullptr : *found;
}

}  // namespace

std::string PropertyText(const Date& value) {
  return fmt::format("{:02}.{:02}.{:04}", value.day, value.month, value.year);
}

std::string PropertyText(const std::vector<std::string>& value) {
  return fmt::format("{}", fmt::join(value, ";"));
}

PropertyBase::PropertyBase(Element& owner, std::string_view name) : owner_(owner), name_(name) {
  owner.properties_.push_back(this);
}

void PropertyBase::Changed() {
  if (owner_.view_ != nullptr) owner_.view_->Show(*this);
}

EventBase::EventBase(Element& owner, std::string_view name) : name_(name) {
  owner.events_.push_back(this);
}

PropertyBase* Element::FindProperty(std::string_view name) const {
  return ByName(properties_, name);
}

std::optional<std::string> Element::Ask(std::string_view property) const {
  const PropertyBase* found = FindProperty(property);
  return found == nullptr ? std::nullopt : std::optional(found->AsText());
}

EventBase* Element::FindEvent(std::string_view name) const {
  return ByName(events_, name);
}

void Element::SetView(ElementView* view) {
  view_ = view;
  if (view == nullptr) return;
  for (const PropertyBase* property : properties_) view->Show(*property);
}

}  // namespace zrt
