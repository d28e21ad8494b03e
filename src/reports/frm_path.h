#pragma once

#include <optional>
#include <string>

#include "ui/form.h"

namespace zrt {

/// Lets the operator choose the folder in which a report's file is saved.
class frmPath final : public Form {
 public:
  /// `folder` is where every choice starts.
  frmPath(Desktop& desktop, std::string folder);

  DriveListBox Drive1{*this, "Drive1"};
  DirListBox Dir1{*this, "Dir1"};
  Button OKButton{*this, "OKButton"};
  Button CancelButton{*this, "CancelButton"};

  /// Opens over the screen that asks. The folder with a backslash behind, nothing when the operator gave up.
  std::optional<std::string> Choose();

 private:
  void Form_KeyDown(Key& key);
  void OKButton_Click();

  std::string folder_;
  std::optional<std::string> chosen_;
};

}  // namespace zrt
