#include "ui/controls.h"

#include <algorithm>

#include "core/errors.h"
#include "core/text.h"
#include "ui/desktop.h"
#include "ui/form.h"

namespace zrt {

namespace {

/// The definition of a control of one of these classes. "QLabel/picture" means a QLabel whose own property `kind` says
/// so.
const ControlDefinition& DefinitionOf(const Form& form, const std::string& name,
                                      std::initializer_list<std::string_view> widget_classes) {
  const ControlDefinition* found = form.Definition().Find(name);
  if (found == nullptr) throw Error("the definition of form " + form.Name() + " lacks " + name);
  std::string declared = found->widget_class;
  if (const auto kind = found->properties.find("kind"); kind != found->properties.end()) declared += "/" + kind->second;
  for (const std::string_view fitting : widget_classes) {
    if (declared == fitting) return *found;
  }
  throw Error("the definition of form " + form.Name() + " declares " + name + " as " + declared);
}

bool SaysOn(const std::string& value) {
  if (value != "on" && value != "off") throw ScriptError("\"on\" or \"off\" is wanted, not \"" + value + "\"");
  return value == "on";
}

}  // namespace

std::string PropertyText(const std::vector<Tab>& tabs) {
  std::vector<std::string> captions;
  for (const Tab& tab : tabs) captions.push_back(tab.caption);
  return PropertyText(captions);
}

// Control

Control::Control(Form& form, std::string name, std::initializer_list<std::string_view> widget_classes)
    : Element(std::move(name)), form_(form), definition_(DefinitionOf(form, Name(), widget_classes)) {
  if (!form_.by_name_.emplace(Name(), this).second) throw Error("form " + form.Name() + " has two controls " + Name());
  form_.controls_.push_back(this);
  Enabled = DefinedFlag("enabled", true);
  Visible = DefinedFlag("visible", true);
  ToolTipText = Defined("toolTip");
  if (const std::string back = Defined("backColor"); !back.empty()) {
    BackColor = static_cast<Colour>(std::stoul(back));
  }
}

Control* Control::Parent() const {
  return definition_.parent.empty() ? nullptr : form_.FindControl(definition_.parent);
}

bool Control::IsShown() const {
  if (!Visible()) return false;
  const Control* parent = Parent();
  return parent == nullptr || parent->IsShown();
}

bool Control::IsEnabled() const {
  if (!Enabled()) return false;
  const Control* parent = Parent();
  return parent == nullptr || parent->IsEnabled();
}

void Control::SetFocus() {
  form_.TheDesktop().SetFocus(*this);
}

void Control::Repaint() {
  form_.TheDesktop().Repaint(*this);
}

void Control::UserKey(Key& key) {
  if (!IsUsable()) return;
  KeyDown.Raise(key);
  if (!key.swallow) form_.KeyDown.Raise(key);
}

void Control::UserSet(const std::string&) {
  throw ScriptError(Name() + " holds nothing that can be set");
}

void Control::UserClick() {
  throw ScriptError(Name() + " can't be clicked");
}

void Control::UserDblClick() {
  throw ScriptError(Name() + " can't be double-clicked");
}

std::string Control::Defined(std::string_view property) const {
  const auto found = definition_.properties.find(property);
  return found == definition_.properties.end() ? std::string() : found->second;
}

bool Control::DefinedFlag(std::string_view property, bool otherwise) const {
  const std::string text = Defined(property);
  return text.empty() ? otherwise : text == "true";
}

// Label, Frame, Picture

Label::Label(Form& form, std::string name) : Control(form, std::move(name), {"QLabel"}) {
  Caption = Defined("text");
}

Frame::Frame(Form& form, std::string name) : Control(form, std::move(name), {"QGroupBox", "QFrame", "QWidget"}) {
  Caption = Defined("title");
}

Picture::Picture(Form& form, std::string name) : Control(form, std::move(name), {"QLabel/picture"}) {}

// Button

Button::Button(Form& form, std::string name) : Control(form, std::move(name), {"QPushButton", "QToolButton"}) {
  Caption = Defined("text");
}

void Button::UserClick() {
  if (IsUsable()) Click.Raise();
}

void Button::UserDrag(Button& target) {
  if (!IsUsable()) return;
  bool begins = false;
  DragStart.Raise(begins);
  if (begins && target.IsUsable()) target.DragDrop.Raise(*this);
}

// TextBox

TextBox::TextBox(Form& form, std::string name) : Control(form, std::move(name), {"QLineEdit"}) {
  Text = Defined("text");
  if (const std::string limit = Defined("maxLength"); !limit.empty()) MaxLength = std::stoi(limit);
  read_only_ = DefinedFlag("readOnly", false);
}

void TextBox::SelectAll() {
  SelStart = 0;
  SelLength = static_cast<int>(Length(Text()));
}

void TextBox::UserType(const std::string& text, int cursor) {
  if (!IsUsable() || read_only_) return;
  const std::string typed = MaxLength() > 0 ? Left(text, static_cast<std::size_t>(MaxLength())) : text;
  if (typed == Text()) return;
  Text = typed;
  SelStart = cursor >= 0 ? cursor : static_cast<int>(Length(typed));
  SelLength = 0;
  Change.Raise();
}

// CheckBox, OptionButton

CheckBox::CheckBox(Form& form, std::string name) : Control(form, std::move(name), {"QCheckBox"}) {
  Caption = Defined("text");
  Value = DefinedFlag("checked", false);
}

void CheckBox::UserTick(bool on) {
  if (!IsUsable() || on == Value()) return;
  Value = on;
  Click.Raise();
}

void CheckBox::UserSet(const std::string& value) {
  UserTick(SaysOn(value));
}

OptionButton::OptionButton(Form& form, std::string name) : Control(form, std::move(name), {"QRadioButton"}) {
  Caption = Defined("text");
  Value = DefinedFlag("checked", false);
}

void OptionButton::Choose() {
  Value = true;
  for (Control* other : Owner().Controls()) {
    auto* option = dynamic_cast<OptionButton*>(other);
    if (option != nullptr && option != this && option->GroupName() == GroupName()) option->Value = false;
  }
}

std::string OptionButton::GroupName() const {
  const std::string array = Name().substr(0, Name().rfind('_'));
  return (Parent() == nullptr ? std::string() : Parent()->Name()) + "/" + array;
}

void OptionButton::UserSet(const std::string& value) {
  if (SaysOn(value)) UserClick();
}

void OptionButton::UserClick() {
  if (!IsUsable()) return;
  Choose();
  Click.Raise();
}

// ComboBox, ListBox

ComboBox::ComboBox(Form& form, std::string name) : Control(form, std::move(name), {"QComboBox"}) {
  Editable = DefinedFlag("editable", false);
  if (const auto items = Definition().lists.find("items"); items != Definition().lists.end()) Items = items->second;
  Text = Defined("currentText");
}

void ComboBox::AddItem(std::string item) {
  std::vector<std::string> items = Items();
  items.push_back(std::move(item));
  Items = std::move(items);
}

void ComboBox::Clear() {
  Items = {};
  Text = {};
}

int ComboBox::ListIndex() const {
  const auto found = std::find(Items().begin(), Items().end(), Text());
  return found == Items().end() ? -1 : static_cast<int>(found - Items().begin());
}

void ComboBox::SelectAll() {
  SelStart = 0;
  SelLength = static_cast<int>(Length(Text()));
}

void ComboBox::UserChoose(const std::string& item) {
  if (!IsUsable()) return;
  if (std::find(Items().begin(), Items().end(), item) == Items().end()) {
    throw ScriptError(Name() + " has no item \"" + item + "\"");
  }
  Text = item;
  Click.Raise();
}

void ComboBox::UserType(const std::string& text) {
  if (!IsUsable() || !Editable() || text == Text()) return;
  Text = text;
  Change.Raise();
}

void ComboBox::UserSet(const std::string& value) {
  if (std::find(Items().begin(), Items().end(), value) == Items().end() && Editable()) {
    UserType(value);
  } else {
    UserChoose(value);
  }
}

ListBox::ListBox(Form& form, std::string name) : Control(form, std::move(name), {"QListWidget"}) {
  if (const auto items = Definition().lists.find("items"); items != Definition().lists.end()) Items = items->second;
}

void ListBox::AddItem(std::string item) {
  Items.Silent().push_back(std::move(item));
  if (OnAdded) OnAdded();
}

void ListBox::Clear() {
  Items = {};
  ListIndex = -1;
}

std::string ListBox::Text() const {
  const int index = ListIndex();
  const bool chosen = index >= 0 && index < static_cast<int>(Items().size());
  return chosen ? Items()[static_cast<std::size_t>(index)] : std::string();
}

void ListBox::UserChoose(int index) {
  if (!IsUsable()) return;
  if (index < 0 || index >= static_cast<int>(Items().size())) throw ScriptError(Name() + " has no such line");
  ListIndex = index;
  Click.Raise();
}

void ListBox::UserSet(const std::string& value) {
  const auto found = std::find(Items().begin(), Items().end(), value);
  if (found == Items().end()) throw ScriptError(Name() + " has no line \"" + value + "\"");
  UserChoose(static_cast<int>(found - Items().begin()));
}

void ListBox::UserDblClick() {
  if (IsUsable()) DblClick.Raise();
}

// Folders, drives, files, calendar, progress

DirListBox::DirListBox(Form& form, std::string name) : Control(form, std::move(name), {"QTreeWidget"}) {}

void DirListBox::UserOpen(const std::string& path) {
  if (!IsUsable()) return;
  Path = path;
  Change.Raise();
}

DriveListBox::DriveListBox(Form& form, std::string name) : Control(form, std::move(name), {"QComboBox/drive"}) {}

void DriveListBox::UserChoose(const std::string& drive) {
  if (!IsUsable()) return;
  Drive = drive;
  Change.Raise();
}

FileListBox::FileListBox(Form& form, std::string name) : Control(form, std::move(name), {"QListWidget/files"}) {}

void FileListBox::UserChoose(const std::string& file_name) {
  if (!IsUsable()) return;
  FileName = file_name;
  Click.Raise();
}

MonthView::MonthView(Form& form, std::string name) : Control(form, std::move(name), {"QCalendarWidget"}) {}

void MonthView::UserPick(const Date& day) {
  if (!IsUsable()) return;
  Value = day;
  DateClick.Raise();
}

ProgressBar::ProgressBar(Form& form, std::string name) : Control(form, std::move(name), {"QProgressBar"}) {}

// Menu, TabStrip

Menu::Menu(Form& form, std::string name) : Control(form, std::move(name), {"QMenu", "QAction"}) {
  Caption = Definition().widget_class == "QMenu" ? Defined("title") : Defined("text");
}

void Menu::UserClick() {
  if (IsUsable()) Click.Raise();
}

TabStrip::TabStrip(Form& form, std::string name) : Control(form, std::move(name), {"QTabBar"}) {
  const auto& lists = Definition().lists;
  const auto keys = lists.find("tabKeys");
  const auto captions = lists.find("tabCaptions");
  if (keys == lists.end() || captions == lists.end() || keys->second.size() != captions->second.size()) {
    throw Error(Name() + " needs as many tab captions as keys");
  }
  std::vector<Tab> tabs;
  for (std::size_t i = 0; i < keys->second.size(); ++i) tabs.push_back({keys->second[i], captions->second[i]});
  Tabs = std::move(tabs);
}

void TabStrip::Add(int index, Tab tab) {
  std::vector<Tab> tabs = Tabs();
  const auto at = std::min(static_cast<std::size_t>(index), tabs.size());
  tabs.insert(tabs.begin() + static_cast<std::ptrdiff_t>(at), std::move(tab));
  Tabs = std::move(tabs);
}

void TabStrip::Remove(int index) {
  std::vector<Tab> tabs = Tabs();
  tabs.erase(tabs.begin() + index);
  Tabs = std::move(tabs);
}

std::string TabStrip::SelectedKey() const {
  const auto index = static_cast<std::size_t>(Selected());
  return index < Tabs().size() ? Tabs()[index].key : std::string();
}

void TabStrip::UserChoose(const std::string& key) {
  if (!IsUsable()) return;
  const auto found = std::find_if(Tabs().begin(), Tabs().end(), [&](const Tab& tab) { return tab.key == key; });
  if (found == Tabs().end()) throw ScriptError(Name() + " has no tab \"" + key + "\"");
  Selected = static_cast<int>(found - Tabs().begin());
  Click.Raise();
}

// Timer

Timer::Timer(Form& form, std::string name, int interval_ms, bool enabled) : Element(std::move(name)), form_(form) {
  Interval = interval_ms;
  Enabled = enabled;
  Interval.KeepAsInitial();
  Enabled.KeepAsInitial();
  form_.timers_.push_back(this);
}

void Timer::UserFire() {
  if (Enabled() && form_.IsLoaded()) Fire.Raise();
}

}  // namespace zrt
