#include "app/frm_splash1.h"

#include <string_view>

#include "platform/settings_file.h"

namespace zrt {

namespace {

constexpr std::string_view kDefaultDataLink = "C:\\KORVINA.udl";

}  // namespace

frmSplash1::frmSplash1(Desktop& desktop, Session& session, const DriveMap& drives, std::string executable,
                       Form& main_window)
    : Form(desktop, "frmSplash1"),
      session_(session),
      drives_(drives),
      executable_(std::move(executable)),
      main_window_(main_window) {
  Timer1.Fire = [this] { Timer1_Timer(); };
  Complete();
}

void frmSplash1::Timer1_Timer() {
  Timer1.Enabled = false;
  session_.UdlPath = kDefaultDataLink;
  if (const auto path = FindDataLinkPath(drives_, executable_)) session_.UdlPath = *path;
  main_window_.Show();
}

}  // namespace zrt
