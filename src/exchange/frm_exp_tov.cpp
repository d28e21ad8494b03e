#include "exchange/frm_exp_tov.h"

#include <fmt/format.h>

#include "core/numbers.h"
#include "core/text.h"
#include "exchange/line_file.h"
#include "platform/text_file.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

constexpr std::size_t kShortestPath = 20;
constexpr int kCode = 0, kName = 1, kCounted = 3;

/// "15112026_190501": unlike in the names of the other files the day goes first.
std::string FileMoment(const DateTime& now) {
  return fmt::format("{:02}{:02}{:04}_{:02}{:02}{:02}", now.date.day, now.date.month, now.date.year, now.hour,
                     now.minute, now.second);
}

}  // namespace

frmExpTov::frmExpTov(Desktop& desktop, Session& session, const DriveMap& drives)
    : Form(desktop, "frmExpTov"), session_(session), drives_(drives) {
  Load = [this] { ShowFolder(WithoutSlash(session_.ReportFolder)); };
  KeyDown = [this](Key& key) {
    if (key.code != Key::kEscape) return;
    key.swallow = true;
    Close();
  };
  Drive1.Change = [this] { ShowFolder(Drive1.Drive() + "\\"); };
  Dir1.Change = [this] { ShowFolder(Dir1.Path()); };
  CmdExport.Click = [this] { CmdExport_Click(); };
  Complete();
}

void frmExpTov::Open(const Recordset& lines) {
  lines_ = &lines;
  ShowModal();
  lines_ = nullptr;
}

void frmExpTov::ShowFolder(const std::string& path) {
  Dir1.Path = path;
  TextPath.Text = JoinPath(path, fmt::format("Exp_{}.txt", FileMoment(session_.TheClock().Now())));
}

void frmExpTov::CmdExport_Click() {
  const std::string path = TextPath.Text();
  if (Length(path) < kShortestPath) return;
  if (lines_->RecordCount() == 0) {
    TheDesktop().MsgBox("Ведомость инвентаризации пустая!", BoxIcon::kNone, BoxButtons::kOk, "KORVINA");
    return;
  }
  ProgressBar1.Max = lines_->RecordCount();
  TextFileWriter file(drives_, path);
  for (int row = 1; row <= lines_->RecordCount(); ++row) {
    const Cell cell = lines_->At(row, kCounted);
    const double counted = cell.IsNull() ? 0 : cell.Number();
    if (counted > 0) {
      file.Line(LineOfFile(ToInt32(lines_->At(row, kCode).Number()), lines_->At(row, kName).TextOrEmpty(),
                           ToInt32(counted * scale::kDocument)));
    }
    ProgressBar1.Value = row;
  }
  file.Close();
  TheDesktop().TellWritten(
      {.text = fmt::format("Выгрузка остатков в файл {}\nуспешно завершена!", path), .title = "DESKOR"}, path);
  ProgressBar1.Value = 0;
}

}  // namespace zrt
