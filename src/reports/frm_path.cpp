#include "reports/frm_path.h"

namespace zrt {

frmPath::frmPath(Desktop& desktop, std::string folder) : Form(desktop, "frmPath"), folder_(std::move(folder)) {
  Load = [this] {
    Drive1.Drive = folder_.substr(0, 2);
    Dir1.Path = folder_.substr(0, folder_.find_last_not_of('\\') + 1);
  };
  KeyDown = [this](Key& key) { Form_KeyDown(key); };
  Drive1.Change = [this] { Dir1.Path = Drive1.Drive() + "\\"; };
  OKButton.Click = [this] { OKButton_Click(); };
  CancelButton.Click = [this] { Close(); };
  Complete();
}

std::optional<std::string> frmPath::Choose() {
  chosen_.reset();
  ShowModal();
  return chosen_;
}

void frmPath::Form_KeyDown(Key& key) {
  if (key.code != Key::kEscape) return;
  key.swallow = true;
  Close();
}

void frmPath::OKButton_Click() {
  // The root of a drive has its backslash already.
  chosen_ = Dir1.Path() + (Dir1.Path().ends_with('\\') ? "" : "\\");
  Close();
}

}  // namespace zrt
