#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zrt {

/// One control as a screen's definition declares it.
struct ControlDefinition {
  std::string name;
  std::string widget_class;  ///< "QLabel", "QAction" ...
  std::string parent;        ///< name of the enclosing control, "" directly in the window
  /// Plain properties by their name in the definition; texts in UTF-8.
  std::map<std::string, std::string, std::less<>> properties;
  std::map<std::string, std::vector<std::string>> lists;  ///< string lists, and "items" of a combo or list box
};

/// A screen's definition: ui/forms/NAME.ui, the one place of its captions, tool tips, initial states and layout. Built
/// into the program, so that it can't get lost.
///
/// Names that begin with "deco" belong to the look alone (headings, boxes for layout): they have no control in the
/// program, and their children count as standing in the control around them. Unnamed layouts count likewise.
class FormDefinition {
 public:
  /// The definition of form `name`. Throws Error if there is none or if it can't be read.
  static const FormDefinition& Of(const std::string& name);

  /// Reads a definition from the text of a .ui file. Throws Error naming `name` if it is none.
  static FormDefinition Read(const std::string& name, std::string_view xml);

  const std::string& Name() const { return name_; }
  const std::string& Title() const { return title_; }

  const ControlDefinition* Find(std::string_view name) const;
  const std::vector<ControlDefinition>& Controls() const { return controls_; }

 private:
  std::string name_;
  std::string title_;
  std::vector<ControlDefinition> controls_;
  std::map<std::string, std::size_t, std::less<>> index_;
};

}  // namespace zrt
