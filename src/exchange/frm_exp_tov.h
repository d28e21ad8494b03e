#pragma once

#include <string>

#include "core/session.h"
#include "platform/drive_map.h"
#include "ui/form.h"

namespace zrt {

/// Writes the counted lines of an inventory to a text file that another installation can load.
class frmExpTov final : public Form {
 public:
  frmExpTov(Desktop& desktop, Session& session, const DriveMap& drives);

  DriveListBox Drive1{*this, "Drive1"};
  DirListBox Dir1{*this, "Dir1"};
  TextBox TextPath{*this, "TextPath"};
  zrt::ProgressBar ProgressBar1{*this, "ProgressBar1"};
  Button CmdExport{*this, "CmdExport"};

  /// Opens over the inventory whose lines are to be written: fields 0, 1 and 3 are code, name and counted quantity.
  /// `lines` must outlive the call.
  void Open(const Recordset& lines);

 private:
  void ShowFolder(const std::string& path);
  void CmdExport_Click();

  Session& session_;
  const DriveMap& drives_;
  const Recordset* lines_ = nullptr;
};

}  // namespace zrt
