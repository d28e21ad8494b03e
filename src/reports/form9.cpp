#include "reports/form9.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "core/text.h"
#include "reports/localisation_reports.h"
#include "reports/report_text.h"
#include "reports/system_report.h"
#include "reports/waiters_full.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

// Widths of the list and of the window around it, twips.
constexpr int kNarrowList = 5415;
constexpr int kNarrowForm = 5860;
constexpr int kWideList = 8655;
constexpr int kWideForm = 9075;

/// A report line on paper: its pieces and where they begin, twips. The sums keep their columns whatever the face.
constexpr int kPointsOnPaper = 10;
constexpr std::size_t kFirstPiece = 22;
constexpr std::size_t kSecondPiece = 10;
constexpr int kSecondLeft = 2100;
constexpr int kThirdLeft = 3100;

std::vector<PrintedPiece> PrintedLine(const std::string& line) {
  const std::string padded = PadRightTo(line, kReportWidth + 1);
  return {{0, Left(padded, kFirstPiece)},
          {kSecondLeft, Mid(padded, kFirstPiece + 1, kSecondPiece)},
          {kThirdLeft, Mid(padded, kFirstPiece + kSecondPiece + 1)}};
}

}  // namespace

Form9::Form9(Desktop& desktop, Session& session, Printer& printer)
    : Form(desktop, "Form9"), Period(*this, session), session_(session), printer_(printer) {
  Load = [this] { Form_Load(); };
  Activate = [this] { Form_Activate(); };
  KeyDown = [this](Key& key) { Form_KeyDown(key); };
  CmdDat.Click = [this] { CmdDat_Click(); };
  CmdDat1.Click = [this] { CmdDat1_Click(); };
  CmdDat2.Click = [this] { CmdDat2_Click(); };
  Check2.Click = [this] { Check2_Click(); };
  CmdPrint.Click = [this] { CmdPrint_Click(); };
  CmdRun.Click = [this] { CmdRun_Click(); };
  CmdSave.Click = [this] { CmdSave_Click(); };
  CmdBack.Click = [this] { CmdBack_Click(); };
  Complete();
}

void Form9::Form_Load() {
  Period.Hours.Load();
  Option1[0].Choose();
  ShowWidth(false);
  if (const std::optional<std::string> hour = names_.Load(session_)) Period.Hours.Show(*hour);
  Period.SetLatestShift();
}

void Form9::Form_Activate() {
  Resize(kNarrowForm);
}

void Form9::Form_KeyDown(Key& key) {
  if (key.code != Key::kEscape) return;
  key.swallow = true;
  if (Period.CloseCalendar()) return;
  if (Frame2.Visible()) return CmdBack_Click();
  Close();
}

void Form9::Resize(int twips) {
  Width = 0;
  Width = twips;
}

void Form9::ShowWidth(bool wide) {
  List1.Width = wide ? kWideList : kNarrowList;
  Resize(wide ? kWideForm : kNarrowForm);
}

std::optional<ReportSpan> Form9::BeginReport() {
  List1.Clear();
  const std::optional<ReportSpan> span = Period.Span();
  if (span) List1.Enabled = true;
  return span;
}

void Form9::CmdDat_Click() {
  ShowWidth(false);
  const std::optional<ReportSpan> span = BeginReport();
  if (!span) return;
  const auto report = Option1[0].Value() ? ReportSystemByDays : ReportSystemPeriod;
  report(session_, names_, List1, *span);
}

void Form9::CmdDat1_Click() {
  ShowWidth(false);
  const std::optional<ReportSpan> span = BeginReport();
  if (!span) return;
  if (!Check1.Value()) return ReportWaitersFull(session_, TheDesktop(), List1, *span);
  const auto report = Option1[0].Value() ? ReportWaitersByDays : ReportWaitersPeriod;
  report(session_, names_, List1, *span);
}

void Form9::CmdDat2_Click() {
  const std::optional<ReportSpan> span = BeginReport();
  if (!span) return;
  ShowWidth(Check2.Value());
  ReportGoodsByLocalisation(session_, names_, List1, *span, Check2.Value());
}

void Form9::Check2_Click() {
  if (!Check2.Value()) ShowWidth(false);
}

void Form9::CmdPrint_Click() {
  const std::string blank(10, ' ');
  PrintJob job{Caption(), kPointsOnPaper, {}};
  job.lines.push_back({{0, session_.Format().DateTimeText(session_.TheClock().Now())}});
  job.lines.push_back({{0, blank}});
  const std::vector<std::string>& lines = List1.Items();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i == 0) {
      job.lines.push_back({{0, Left(lines[i], kReportWidth)}});
    } else {
      job.lines.push_back(PrintedLine(lines[i]));
    }
  }
  job.lines.push_back({{0, blank}});
  printer_.Print(job);
}

void Form9::CmdRun_Click() {
  Resize(kWideForm);
  Frame2.Visible = true;
  CmdBack.Visible = true;
  for (std::size_t kitchen = 0; kitchen < TextNames.size(); ++kitchen) {
    for (std::size_t workshop = 0; workshop < TextNames[kitchen].size(); ++workshop) {
      TextNames[kitchen][workshop].Text = names_.Name(static_cast<int>(kitchen) + 1, static_cast<int>(workshop));
    }
  }
  TextNames[0][0].SetFocus();
}

void Form9::CmdBack_Click() {
  Frame2.Visible = false;
  CmdBack.Visible = false;
  ShowWidth(false);
  CmdRun.SetFocus();
}

void Form9::CmdSave_Click() {
  for (int kitchen = 1; kitchen <= KatNames::kKitchens; ++kitchen) {
    auto& boxes = TextNames.at(static_cast<std::size_t>(kitchen - 1));
    KatNames::FourNames names;
    std::transform(boxes.begin(), boxes.end(), names.begin(), [](const TextBox& box) { return box.Text(); });
    names = KatNames::Completed(kitchen, std::move(names));
    for (std::size_t i = 0; i < names.size(); ++i) boxes[i].Text = names[i];
    KatNames::Store(session_, kitchen, names);
  }
  names_.Reload(session_);
  TheDesktop().MsgBox("настройки сохранены", BoxIcon::kNone, BoxButtons::kOk, "Системный отчёт");
}

}  // namespace zrt
