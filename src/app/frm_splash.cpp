#include "app/frm_splash.h"

#include "ui/desktop.h"

namespace zrt {

frmSplash::frmSplash(Desktop& desktop, std::string version) : Form(desktop, "frmSplash"), version_(std::move(version)) {
  Load = [this] { Form_Load(); };
  KeyDown = [this](Key&) { Close(); };
  Click = [this] { Close(); };
  Complete();
}

void frmSplash::Form_Load() {
  lblVersion.Caption = "Version " + version_;
  lblProductName.Caption = TheDesktop().ProgramTitle;
}

}  // namespace zrt
