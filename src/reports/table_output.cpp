#include "reports/table_output.h"

#include "core/errors.h"
#include "ui/desktop.h"

namespace zrt {

TableOutput::TableOutput(Form& form, const TableTools& tools, bool with_workbook) : FormSection(form), tools_(tools) {
  if (with_workbook) {
    Check3.emplace(form, "Check3");
    Check3->Click = [this] { Check3_Click(); };
  }
  CmdPath.Click = [this] { CmdPath_Click(); };
}

void TableOutput::Load() {
  LblPath.Caption = tools_.session.ReportFolder;
}

void TableOutput::ShowWork(const std::string& text) {
  Label4.Caption = text;
  Label4.Repaint();
}

void TableOutput::Run(const std::function<void()>& work) {
  try {
    work();
  } catch (const Stopped&) {
    ShowWork("остановлено");
  }
}

void TableOutput::TellNoData() {
  TheDesktop().MsgBox("Нет данных!", BoxIcon::kCritical);
}

void TableOutput::SaveCsv(const std::string& prefix, const std::vector<std::string>& titles, const ReportTable& table) {
  const std::string now = tools_.session.Format().DateTimeText(tools_.session.TheClock().Now());
  const std::string path = LblPath.Caption() + prefix + FileStamp(now) + ".csv";
  WriteCsv(tools_.drives, path, titles, table);
  TheDesktop().TellWritten(
      {.text = "Выгрузка в файл " + path + "\n\rуспешно завершена!", .icon = BoxIcon::kExclamation, .title = "DESKOR"},
      path);
}

void TableOutput::OpenWorkbook(const std::vector<std::string>& titles, const std::function<ReportTable()>& make_table,
                               const SheetLook& look) {
  // A book that can't be made doesn't come, as one without a spreadsheet program doesn't.
  IgnoreFailure([&] { tools_.spreadsheet.Open(MakeWorkbook(titles, make_table(), look)); });
}

void TableOutput::Check3_Click() {
  const bool file = !Check3->Value();
  LblPath.Enabled = file;
  CmdPath.Enabled = file;
}

void TableOutput::CmdPath_Click() {
  if (const std::optional<std::string> folder = tools_.path.Choose()) LblPath.Caption = *folder;
}

}  // namespace zrt
