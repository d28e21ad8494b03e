#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "core/dates.h"

namespace zrt {

class Element;
class PropertyBase;

/// The drawn side of an element. Each element has at most one.
class ElementView {
 public:
  virtual ~ElementView() = default;
  /// A property has a new value; the view shows it.
  virtual void Show(const PropertyBase& property) = 0;
};

/// A named value of an element. Reachable by its name for scripts of the shop's journeys.
class PropertyBase {
 public:
  PropertyBase(Element& owner, std::string_view name);
  virtual ~PropertyBase() = default;
  PropertyBase(const PropertyBase&) = delete;
  PropertyBase& operator=(const PropertyBase&) = delete;

  std::string_view Name() const { return name_; }
  Element& Owner() const { return owner_; }

  /// The value as a script writes it: texts as they are, Booleans "True"/"False", numbers in decimal.
  virtual std::string AsText() const = 0;

  virtual void KeepAsInitial() = 0;  ///< the present value is what Reset brings back
  virtual void Reset() = 0;

 protected:
  void Changed();

 private:
  Element& owner_;
  std::string_view name_;
};

/// A property's value as a text, as it is read by name and stored in a form's definition. A property of another type
/// brings its own.
inline std::string PropertyText(const std::string& value) {
  return value;
}
inline std::string PropertyText(bool value) {
  return value ? "True" : "False";
}
template <std::integral Number>
std::string PropertyText(Number value) {
  return std::to_string(value);
}
std::string PropertyText(const Date& value);
std::string PropertyText(const std::vector<std::string>& value);

/// Assigning a value that differs tells the view; reading is reading a value: `if (CmdDat.Enabled()) ...`. Assigning
/// never raises an event: only what the operator does raises one.
template <class T>
class Property final : public PropertyBase {
 public:
  Property(Element& owner, std::string_view name, T initial = T{})
      : PropertyBase(owner, name), value_(initial), initial_(std::move(initial)) {}

  /// Runs before a value is stored, equal to the present one or not. A failure leaves the present one.
  std::function<void(const T&)> Let;

  /// A text may come as any kind of text; the property keeps a copy of it.
  Property& operator=(std::conditional_t<std::is_same_v<T, std::string>, std::string_view, T> new_value) {
    T value(std::move(new_value));
    if (Let) Let(value);
    if (value == value_) return *this;
    value_ = std::move(value);
    Changed();
    return *this;
  }
  const T& operator()() const { return value_; }

  /// The value to be changed in place, unseen by the view: for controls that tell their view themselves.
  T& Silent() { return value_; }

  std::string AsText() const override { return PropertyText(value_); }
  void KeepAsInitial() override { initial_ = value_; }
  void Reset() override { *this = initial_; }

 private:
  T value_;
  T initial_;
};

/// Something that the operator does to an element. One handler each, set in the form's constructor:
/// `CmdDat.Click = [this] { CmdDat_Click(); };`
class EventBase {
 public:
  EventBase(Element& owner, std::string_view name);
  virtual ~EventBase() = default;
  EventBase(const EventBase&) = delete;
  EventBase& operator=(const EventBase&) = delete;

  std::string_view Name() const { return name_; }

 private:
  std::string_view name_;
};

template <class... Args>
class Event final : public EventBase {
 public:
  using EventBase::EventBase;

  Event& operator=(std::function<void(Args...)> handler) {
    handler_ = std::move(handler);
    return *this;
  }
  explicit operator bool() const { return static_cast<bool>(handler_); }

  /// Runs the handler, if there is one.
  void Raise(Args... args) const {
    if (handler_) handler_(std::forward<Args>(args)...);
  }

 private:
  std::function<void(Args...)> handler_;
};

/// What forms and controls have in common: a name, named properties and events, and a view.
class Element {
 public:
  explicit Element(std::string name) : name_(std::move(name)) {}
  virtual ~Element() = default;
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;

  const std::string& Name() const { return name_; }

  /// By name, case as written; nullptr when there is none.
  PropertyBase* FindProperty(std::string_view name) const;
  /// The value of a property as a script reads it; nothing when there is none.
  virtual std::optional<std::string> Ask(std::string_view property) const;
  EventBase* FindEvent(std::string_view name) const;
  const std::vector<PropertyBase*>& Properties() const { return properties_; }

  /// The view that shows this element from now on; nullptr takes it off. Not owned. A new view is told every property.
  void SetView(ElementView* view);
  ElementView* View() const { return view_; }

 private:
  friend class PropertyBase;
  friend class EventBase;

  std::string name_;
  std::vector<PropertyBase*> properties_;
  std::vector<EventBase*> events_;
  ElementView* view_ = nullptr;
};

}  // namespace zrt
