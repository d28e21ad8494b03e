#include "reports/form9.h"

#include <algorithm>

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

bool IsBlank(const std::string& text) {
  return Trim(text).empty();
}

std::string WithoutLeadingBlanks(const std::string& text) {
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
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
  const Recordset& stored = session_.ReadOne("SELECT N8,N9,N10 FROM CONST WHERE COD=5");
  LoadName(kKatNameColumns[0], stored.Field(1));
  LoadName(kKatNameColumns[1], stored.Field(2));
  if (!stored.IsNull(0)) Period.Hours.Show(stored.Field(0).Text());
  Period.SetLatestShift();
  LoadName(kKatNameColumns[2], session_.ReadOne("SELECT N10 FROM CONST WHERE COD=6").Field(0));
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
  for (const KatNameColumn& where : kKatNameColumns) session_.Write(SaveNames(where));
  const Recordset& stored = session_.ReadOne("SELECT N9,N10 FROM CONST WHERE COD=5");
  LoadName(kKatNameColumns[0], stored.Field(0));
  LoadName(kKatNameColumns[1], stored.Field(1));
  LoadName(kKatNameColumns[2], session_.ReadOne("SELECT N10 FROM CONST WHERE COD=6").Field(0));
  TheDesktop().MsgBox("настройки сохранены", BoxIcon::kNone, BoxButtons::kOk, "Системный отчёт");
}

void Form9::LoadName(const KatNameColumn& where, const Cell& stored) {
  if (stored.IsNull()) {
    names_.Clear(where.kitchen);
  } else {
    names_.Cut(where.kitchen, stored.Text());
  }
}

std::string Form9::SaveNames(const KatNameColumn& where) {
  auto& boxes = TextNames.at(static_cast<std::size_t>(where.kitchen - 1));
  const bool empty = std::all_of(boxes.begin(), boxes.end(), [](const TextBox& box) { return box.Text().empty(); });
  if (empty) return fmt::format("UPDATE CONST SET {}=NULL WHERE COD={}", where.column, where.cod);
  std::string text;
  for (std::size_t workshop = 0; workshop < boxes.size(); ++workshop) {
    TextBox& box = boxes[workshop];
    const std::size_t width = workshop == 0 ? KatNames::kKitchenWidth : KatNames::kWorkshopWidth;
    if (IsBlank(box.Text())) box.Text = KatNames::DefaultName(where.kitchen, static_cast<int>(workshop));
    box.Text = PadRightTo(WithoutLeadingBlanks(box.Text()), width);
    text += Left(box.Text(), width);
  }
  return fmt::format("UPDATE CONST SET {}='{}' WHERE COD={}", where.column, text, where.cod);
}

}  // namespace zrt
