#include "ui/form_definition.h"

#include <pugixml.hpp>
#include <set>

#include "core/errors.h"
#include "ui/embedded_forms.h"

namespace zrt {

namespace {

bool IsDecoration(std::string_view name) {
  return name.empty() || name.substr(0, 4) == "deco";
}

std::vector<std::string> Strings(const pugi::xml_node& list) {
  std::vector<std::string> all;
  for (const pugi::xml_node& text : list.children("string")) all.emplace_back(text.text().get());
  return all;
}

void ReadProperties(const pugi::xml_node& node, ControlDefinition& control) {
  for (const pugi::xml_node& property : node.children("property")) {
    const pugi::xml_node value = property.first_child();
    const char* name = property.attribute("name").value();
    if (std::string_view(value.name()) == "stringlist") {
      control.lists[name] = Strings(value);
    } else {
      control.properties[name] = value.text().get();
    }
  }
  // Items of a combo or list box; the items of a layout hold no text of their own.
  for (const pugi::xml_node& item : node.children("item")) {
    const pugi::xml_node text = item.find_child_by_attribute("property", "name", "text");
    if (text) control.lists["items"].emplace_back(text.child("string").text().get());
  }
}

class Reader {
 public:
  explicit Reader(std::vector<ControlDefinition>& controls) : controls_(controls) {}

  /// `node` is a widget or layout; everything named below it is a control that stands in `parent`.
  void Walk(const pugi::xml_node& node, const std::string& parent) {
    for (const pugi::xml_node& child : node.children()) {
      const std::string_view kind = child.name();
      if (kind == "widget" || kind == "action") {
        const std::string name = child.attribute("name").value();
        if (IsDecoration(name)) {
          Walk(child, parent);
        } else {
          Add(child, name, kind == "action" ? "QAction" : child.attribute("class").value(), parent);
          Walk(child, name);
        }
      } else if (kind == "layout" || kind == "item") {
        Walk(child, parent);
      } else if (kind == "addaction") {
        menu_of_[child.attribute("name").value()] = parent;
      }
    }
  }

  /// Entries are declared beside the menus and put into them by name.
  void PlaceMenuEntries() {
    for (ControlDefinition& control : controls_) {
      if (const auto menu = menu_of_.find(control.name); menu != menu_of_.end()) control.parent = menu->second;
    }
  }

 private:
  void Add(const pugi::xml_node& node, const std::string& name, std::string widget_class, const std::string& parent) {
    ControlDefinition control{name, std::move(widget_class), parent, {}, {}};
    ReadProperties(node, control);
    controls_.push_back(std::move(control));
  }

  std::vector<ControlDefinition>& controls_;
  std::map<std::string, std::string> menu_of_;
};

}  // namespace

FormDefinition FormDefinition::Read(const std::string& name, std::string_view xml) {
  pugi::xml_document document;
  const pugi::xml_parse_result result =
      document.load_buffer(xml.data(), xml.size(), pugi::parse_default | pugi::parse_ws_pcdata_single);
  const pugi::xml_node root = document.child("ui").child("widget");
  if (!result || !root) throw Error("definition of form " + name + ": " + result.description());

  FormDefinition definition;
  definition.name_ = name;
  definition.title_ = root.find_child_by_attribute("property", "name", "windowTitle").child("string").text().get();
  Reader reader(definition.controls_);
  reader.Walk(root, "");
  reader.PlaceMenuEntries();
  for (std::size_t i = 0; i < definition.controls_.size(); ++i) {
    if (!definition.index_.emplace(definition.controls_[i].name, i).second) {
      throw Error("definition of form " + name + ": two controls are named " + definition.controls_[i].name);
    }
  }
  return definition;
}

const FormDefinition& FormDefinition::Of(const std::string& name) {
  static std::map<std::string, FormDefinition> read;
  if (const auto known = read.find(name); known != read.end()) return known->second;
  const std::string_view xml = EmbeddedForm(name);
  if (xml.empty()) throw Error("no definition of form " + name);
  return read.emplace(name, Read(name, xml)).first->second;
}

const ControlDefinition* FormDefinition::Find(std::string_view name) const {
  const auto found = index_.find(name);
  return found == index_.end() ? nullptr : &controls_[found->second];
}

}  // namespace zrt
