#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/dates.h"
#include "ui/element.h"

namespace zrt {

class Form;
struct ControlDefinition;

/// Colours are blue-green-red integers; those with the top bit set are the window system's own.
using Colour = std::uint32_t;
namespace colour {
inline constexpr Colour kWindow = 0x80000005;
inline constexpr Colour kButtonFace = 0x8000000F;
inline constexpr Colour kButtonText = 0x80000012;
inline constexpr Colour kHighlightEdge = 0x8000000E;
}  // namespace colour

/// A key as the handlers see it. Anything that types a character comes as kCharacter with the character. All other keys
/// are kOther; they reach the form's handler alone.
struct Key {
  enum Code { kEnter, kEscape, kUp, kDown, kHome, kEnd, kCharacter, kOther };
  Code code;
  std::string text;      ///< the character, for kCharacter
  bool swallow = false;  ///< a handler sets this when the widget must not see the key
};

/// Base of every named control. Constructing one looks it up in the form's definition, takes its initial state from
/// there and registers it with the form; throws Error when the definition lacks it or declares another kind of widget.
///
/// Members named User... are what the hosts call when the operator does something: they change the value as the
/// operator did and raise the event. They do nothing on a control that can't be used (disabled, hidden, in a hidden
/// frame).
class Control : public Element {
 public:
  Property<bool> Enabled{*this, "Enabled", true};
  Property<bool> Visible{*this, "Visible", true};
  Property<std::string> ToolTipText{*this, "ToolTipText"};
  Property<Colour> BackColor{*this, "BackColor", colour::kButtonFace};
  Property<Colour> ForeColor{*this, "ForeColor", colour::kButtonText};
  Property<bool> FontBold{*this, "FontBold", false};

  Event<Key&> KeyDown{*this, "KeyDown"};

  Form& Owner() const { return form_; }
  /// The control around this one; nullptr directly in the window.
  Control* Parent() const;

  /// Visible itself and in all that is around it.
  bool IsShown() const;
  /// Enabled itself and in all that is around it.
  bool IsEnabled() const;
  bool IsUsable() const { return IsShown() && IsEnabled(); }

  /// Gives the control the keyboard.
  void SetFocus();
  /// Draws the control's present state at once, without waiting for the handler to end.
  void Repaint();

  /// A key reached the control. Raises KeyDown; the host honours key.swallow.
  void UserKey(Key& key);
  /// For scripts: types VALUE, chooses an item or ticks, as fits the control. Throws Error where nothing can be set.
  virtual void UserSet(const std::string& value);
  /// For scripts and hosts: press, double click. Throw Error on a control that has none.
  virtual void UserClick();
  virtual void UserDblClick();

  /// The form was unloaded: lets go of what properties alone don't hold.
  virtual void Forget() {}

 protected:
  Control(Form& form, std::string name, std::initializer_list<std::string_view> widget_classes);

  const ControlDefinition& Definition() const { return definition_; }
  /// Property of the definition as text, "" when it isn't given.
  std::string Defined(std::string_view property) const;
  bool DefinedFlag(std::string_view property, bool otherwise) const;

 private:
  Form& form_;
  const ControlDefinition& definition_;
};

class Label final : public Control {
 public:
  Label(Form& form, std::string name);
  Property<std::string> Caption{*this, "Caption"};
};

class Frame final : public Control {
 public:
  Frame(Form& form, std::string name);
  Property<std::string> Caption{*this, "Caption"};
};

class Button final : public Control {
 public:
  Button(Form& form, std::string name);
  Property<std::string> Caption{*this, "Caption"};
  Event<> Click{*this, "Click"};
  /// A drag that began on another button of the form ended on this one; the argument is that button.
  Event<Control&> DragDrop{*this, "DragDrop"};
  /// The left button is held and the mouse moves: the handler answers whether a drag begins.
  Event<bool&> DragStart{*this, "DragStart"};

  void UserClick() override;
  /// The whole gesture from this button to `target`, which may be the same.
  void UserDrag(Button& target);
};

class TextBox final : public Control {
 public:
  TextBox(Form& form, std::string name);
  Property<std::string> Text{*this, "Text"};
  Property<int> SelStart{*this, "SelStart", 0};    ///< characters before the cursor
  Property<int> SelLength{*this, "SelLength", 0};  ///< characters selected
  Property<int> MaxLength{*this, "MaxLength", 0};  ///< 0: no limit
  Event<> Change{*this, "Change"};

  void SelectAll();
  /// The operator typed: the text is now `text`, the cursor stands behind `cursor` characters (-1: at the end). Nothing
  /// for a box that the definition makes read-only.
  void UserType(const std::string& text, int cursor = -1);
  void UserSet(const std::string& value) override { UserType(value); }

 private:
  bool read_only_ = false;
};

class CheckBox final : public Control {
 public:
  CheckBox(Form& form, std::string name);
  Property<std::string> Caption{*this, "Caption"};
  Property<bool> Value{*this, "Value", false};
  Event<> Click{*this, "Click"};

  void UserTick(bool on);
  void UserSet(const std::string& value) override;  ///< "on" or "off"
  void UserClick() override { UserTick(!Value()); }
};

/// One of several of which one is chosen: choosing it clears the others of its control array in the same frame.
class OptionButton final : public Control {
 public:
  OptionButton(Form& form, std::string name);
  Property<std::string> Caption{*this, "Caption"};
  Property<bool> Value{*this, "Value", false};
  Event<> Click{*this, "Click"};

  /// Chooses this one without an event, as the program itself does.
  void Choose();
  void UserSet(const std::string& value) override;  ///< "on"
  void UserClick() override;

  /// Those with the same group name exclude each other.
  std::string GroupName() const;
};

class ComboBox final : public Control {
 public:
  ComboBox(Form& form, std::string name);
  Property<std::vector<std::string>> Items{*this, "Items"};
  Property<std::string> Text{*this, "Text"};
  Property<bool> Editable{*this, "Editable", true};  ///< a text that is no item can be typed
  Property<int> SelStart{*this, "SelStart", 0};      ///< of an editable one: characters before the cursor
  Property<int> SelLength{*this, "SelLength", 0};    ///< and characters selected
  Event<> Click{*this, "Click"};                     ///< an item was chosen
  Event<> Change{*this, "Change"};                   ///< a text was typed

  void AddItem(std::string item);
  void Clear();           ///< no items, no text
  int ListIndex() const;  ///< index of Text among the items from 0, -1 if it is none
  void SelectAll();

  void UserChoose(const std::string& item);
  void UserType(const std::string& text);
  void UserSet(const std::string& value) override;  ///< chooses the item, else types the text
};

/// A list of lines: choosing one raises Click.
class ListBox final : public Control {
 public:
  ListBox(Form& form, std::string name);
  Property<std::vector<std::string>> Items{*this, "Items"};
  Property<int> ListIndex{*this, "ListIndex", -1};
  Property<int> Width{*this, "Width", 0};  ///< twips that the list has at least; 0 as the definition says
  Event<> Click{*this, "Click"};
  Event<> DblClick{*this, "DblClick"};
  /// A line was added at the end: only views listen. Lists of thousands of lines grow one by one.
  std::function<void()> OnAdded;

  void AddItem(std::string item);
  void Clear();
  std::string Text() const;  ///< the chosen line, "" if none is
  void UserChoose(int index);
  void UserSet(const std::string& value) override;
  void UserDblClick() override;
};

/// The folders of a drive: shows the folder Path and those in it.
class DirListBox final : public Control {
 public:
  DirListBox(Form& form, std::string name);
  Property<std::string> Path{*this, "Path"};  ///< a drive path, "C:\Korvina\Report"
  Event<> Change{*this, "Change"};

  void UserOpen(const std::string& path);
  void UserSet(const std::string& value) override { UserOpen(value); }
};

class DriveListBox final : public Control {
 public:
  DriveListBox(Form& form, std::string name);
  Property<std::string> Drive{*this, "Drive", "C:"};
  Event<> Change{*this, "Change"};

  void UserChoose(const std::string& drive);
  void UserSet(const std::string& value) override { UserChoose(value); }
};

/// The files of a folder whose names fit a pattern; choosing one raises Click.
class FileListBox final : public Control {
 public:
  FileListBox(Form& form, std::string name);
  Property<std::string> Path{*this, "Path"};          ///< a drive path, "C:\\Korvina\\Report"
  Property<std::string> Pattern{*this, "Pattern"};    ///< "*.txt*"; "*" stands for any text, case is ignored
  Property<std::string> FileName{*this, "FileName"};  ///< the file chosen, "" if none is
  Event<> Click{*this, "Click"};

  void UserChoose(const std::string& file_name);
  void UserSet(const std::string& value) override { UserChoose(value); }
};

/// A month's calendar. Picking a day raises DateClick.
class MonthView final : public Control {
 public:
  MonthView(Form& form, std::string name);
  Property<Date> Value{*this, "Value"};
  Event<> DateClick{*this, "DateClick"};

  void UserPick(const Date& day);
};

class ProgressBar final : public Control {
 public:
  ProgressBar(Form& form, std::string name);
  Property<int> Max{*this, "Max", 100};
  Property<int> Value{*this, "Value", 0};
};

/// A picture; it has no content that the program changes.
class Picture final : public Control {
 public:
  Picture(Form& form, std::string name);
};

/// An entry, a submenu or a separator of the main menu.
class Menu final : public Control {
 public:
  Menu(Form& form, std::string name);
  Property<std::string> Caption{*this, "Caption"};
  Event<> Click{*this, "Click"};

  void UserClick() override;
};

struct Tab {
  std::string key;
  std::string caption;
  friend bool operator==(const Tab&, const Tab&) = default;
};

std::string PropertyText(const std::vector<Tab>& tabs);  ///< the captions

/// The strip of tabs; handlers tell the tabs apart by their keys.
class TabStrip final : public Control {
 public:
  TabStrip(Form& form, std::string name);
  Property<std::vector<Tab>> Tabs{*this, "Tabs"};
  Property<int> Selected{*this, "Selected", 0};  ///< index from 0
  Event<> Click{*this, "Click"};

  void Add(int index, Tab tab);  ///< index from 0; past the end adds at the end
  void Remove(int index);
  std::string SelectedKey() const;  ///< "" without tabs

  void UserChoose(const std::string& key);
  void UserSet(const std::string& value) override { UserChoose(value); }
};

/// Fires after Interval milliseconds, again and again while it is enabled. Not part of a definition.
class Timer final : public Element {
 public:
  Timer(Form& form, std::string name, int interval_ms, bool enabled);
  Property<int> Interval{*this, "Interval"};
  Property<bool> Enabled{*this, "Enabled"};
  Event<> Fire{*this, "Timer"};

  Form& Owner() const { return form_; }
  void UserFire();  ///< the interval has passed

 private:
  Form& form_;
};

/// A control array: items NAME_first to NAME_first+N-1. Controls can't move, so they are built in place.
template <class T, std::size_t N>
std::array<T, N> ControlArray(Form& form, const std::string& name, int first) {
  return [&]<std::size_t... I>(std::index_sequence<I...>) {
    return std::array<T, N>{T(form, name + "_" + std::to_string(first + static_cast<int>(I)))...};
  }
  (std::make_index_sequence<N>{});
}

}  // namespace zrt
