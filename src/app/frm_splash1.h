#pragma once

#include <string>

#include "core/session.h"
#include "platform/drive_map.h"
#include "ui/form.h"

namespace zrt {

/// The first window: a picture that stands while the program starts.
class frmSplash1 final : public Form {
 public:
  /// `executable`: file name of this program, as the settings file names it. `main_window` is shown when the timer
  /// fires.
  frmSplash1(Desktop& desktop, Session& session, const DriveMap& drives, std::string executable, Form& main_window);

  Picture Picture1{*this, "Picture1"};
  Timer Timer1{*this, "Timer1", 500, true};
  Timer Timer2{*this, "Timer2", 100, false};

 private:
  void Timer1_Timer();

  Session& session_;
  const DriveMap& drives_;
  std::string executable_;
  Form& main_window_;
};

}  // namespace zrt
