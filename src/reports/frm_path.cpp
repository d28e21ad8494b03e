#include "reports/frm_path.h"

#include "platform/drive_map.h"

namespace zrt {

frmPath::frmPath(Desktop& desktop, std::string folder) : Form(desktop, "frmPath"), folder_(std::move(folder)) {
  Load = [this] {
    Drive1.Drive = folder_.substr(0, 2);
    Dir1.Path = WithoutSlash(folder_);
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
  chosen_ = JoinPath(Dir1.Path(), "");
  Close();
}

}  // namespace zrt
