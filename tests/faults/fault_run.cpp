#include "faults/fault_run.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "check/shop_check.h"
#include "core/errors.h"

namespace zrt::test {

namespace {

/// JOURNAL.ID begins here, so that a document's number is told from any other.
constexpr const char* kFirstDocument = "910001";

constexpr Colour kLampPosted = 65280;

bool IsOfReserve(const std::string& table) {
  return table.find('.') != std::string::npos;
}

bool IsDocumentNumber(std::string_view text) {
  return text.size() == 6 && text.starts_with("91") && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::vector<std::string> Split(std::string_view text, std::string_view mark) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(mark), text.size());
    if (end > 0) parts.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + mark.size(), text.size()));
  }
  return parts;
}

/// A balance that can't be read counts as none, and the action goes on.
bool IsGuarded(const std::string& statement) {
  return statement.starts_with("SELECT OSTKOL FROM REGISTR WHERE RUN=1") &&
         statement.find("DATEDOC<=") == std::string::npos;
}

bool IsWrite(const std::string& statement) {
  return !statement.starts_with("SELECT") && !statement.starts_with("SHOW");
}

std::string Shown(const std::map<std::string, std::vector<std::string>>& state) {
  std::string text;
  for (const auto& [table, rows] : state) {
    text += table + ":\n";
    for (const std::string& row : rows) text += "  " + row + "\n";
  }
  return text.empty() ? "nothing changed\n" : text;
}

}  // namespace

BoxAnswer PatientDesktop::DoMsgBox(const Message& message) {
  Boxes.push_back(message.text);
  return message.buttons == BoxButtons::kYesNo ? BoxAnswer::kYes : BoxAnswer::kOk;
}

std::string PatientDesktop::DoInputBox(const std::string& prompt, const std::string&, const std::string&) {
  Boxes.push_back(prompt);
  return prompt.find("парол") == std::string::npos ? Entry : "357218";
}

void PatientDesktop::DoModalLoop(Form& form) {
  // Every opener of a modal form ends with it, but for the one that asks for a folder.
  if (Control* ok = form.Name() == "frmPath" ? form.FindControl("OKButton") : nullptr) ok->UserClick();
}

void PatientDesktop::DoRuntimeError(const std::exception& error) {
  Boxes.push_back(std::string("!") + error.what());
}

/// Looks at the shop before each statement of the action.
class FaultRun::Recorder final : public FaultSource {
 public:
  Recorder(FaultRun& run, Whole& whole) : run_(run), whole_(whole) {}
  Verdict BeforeStatement(std::string_view sql) override {
    const bool changed = whole_.statements.empty() || IsWrite(whole_.statements.back());
    whole_.before.push_back(changed ? run_.Look() : whole_.before.back());
    whole_.statements.emplace_back(sql);
    return Verdict::kRun;
  }

 private:
  FaultRun& run_;
  Whole& whole_;
};

FaultRun::FaultRun() {
  tables_ = shop_.Column("SHOW TABLES");
  for (const std::string& table : tables_) {
    columns_[table] = shop_.Value(
        fmt::format("SELECT GROUP_CONCAT(COLUMN_NAME ORDER BY ORDINAL_POSITION) FROM information_schema.COLUMNS WHERE "
                    "TABLE_SCHEMA=DATABASE() AND TABLE_NAME='{0}' AND (EXTRA<>'auto_increment' OR '{0}'='JOURNAL')",
                    table));
  }
  for (const char* table : {"TOVAR", "KLIENT", "HOTKEYS", "PROD", "KASSA"}) {
    reserve_.Sql(fmt::format("DELETE FROM {}", table));
    tables_.push_back(reserve_.Address().schema + "." + table);
    columns_[tables_.back()] = columns_.at(table);
  }
  WriteFile(kReserveLink, LinkTo(reserve_.Address()));
  shop_.Sql(fmt::format("ALTER TABLE JOURNAL AUTO_INCREMENT={}", kFirstDocument));
}

void FaultRun::Furnish(const std::vector<std::string>& statements, const std::vector<std::string>& steps) {
  for (const std::string& statement : statements) shop_.Sql(statement);
  Restart();
  for (const std::string& one : steps) {
    Do(one);
    if (HasFailed()) throw Error(one + ": " + desktop_.Boxes.back());
  }
  app_.reset();
  for (const std::string& table : tables_) {
    if (IsOfReserve(table)) continue;
    kept_.Sql("DELETE FROM " + table);
    kept_.Sql(fmt::format("INSERT INTO {} SELECT * FROM {}.{}", table, shop_.Address().schema, table));
  }
  checksums_ = Checksums();
  journal_ = shop_.Column("SELECT ID FROM JOURNAL ORDER BY ID");
  for (const std::string& table : tables_) kept_rows_[table] = TableRows(table);
}

void FaultRun::Restart() {
  app_.reset();
  Restore();
  clock_.Set({{2026, 11, 12}, 12, 0, 0});
  StartProgram();
  desktop_.Boxes.clear();
  desktop_.Entry.clear();
}

void FaultRun::StartProgram() {
  app_.reset();
  desktop_.BeginAnew();
  app_ = std::make_unique<App>(desktop_, clock_, drives_, AppSettings{shop_.Address(), "zrt", printer_, spreadsheet_});
  LayFaults(source_);
  app_->Start();
  desktop_.UserAction([this] { app_->Splash.Timer1.UserFire(); });
}

void FaultRun::LayFaults(FaultSource* source) {
  source_ = source;
  app_->TheSession.MainConnection.SetFaultSource(source);
  app_->TheSession.ConnReserve.SetFaultSource(source);
}

void FaultRun::Restore() {
  // Nobody has written since it was looked at last.
  if (seen_.empty()) seen_ = Checksums();
  for (const auto& [table, checksum] : checksums_) {
    if (seen_.at(table) == checksum) continue;
    shop_.Sql("DELETE FROM " + table);
    if (IsOfReserve(table)) continue;
    shop_.Sql(fmt::format("INSERT INTO {} SELECT * FROM {}.{}", table, kept_.Address().schema, table));
  }
  seen_.clear();
}

// The operator

bool FaultRun::HasFailed() const {
  return std::any_of(desktop_.Boxes.begin(), desktop_.Boxes.end(),
                     [](const std::string& box) { return box.starts_with('!'); });
}

void FaultRun::Do(std::string_view steps) {
  for (const std::string& step : Split(steps, "; ")) {
    if (HasFailed()) return;
    Step(step);
  }
}

Control& FaultRun::Find(std::string_view name) {
  const std::vector<std::string> parts = Split(name, ".");
  Form* const form = desktop_.FindForm(parts.at(0));
  Control* const control = form == nullptr ? nullptr : form->FindControl(parts.at(1));
  if (control == nullptr) throw Error("no control is called " + std::string(name));
  return *control;
}

void FaultRun::Step(const std::string& step) {
  const std::vector<std::string> words = Split(step, " ");
  const auto number = [&](std::size_t word) { return std::stoi(words.at(word)); };
  if (words[0] == "pick") {
    return desktop_.UserAction(
        [&] { app_->Stock.BroadcastToForm(number(2), number(3), number(4), static_cast<std::uint8_t>(number(1))); });
  }
  if (words[0] == "open") return OpenDocument(number(1));
  if (words[0] == "sql") return shop_.Sql(step.substr(4));
  if (words[0] == "restart") return StartProgram();
  if (words[0] == "drag") {
    return desktop_.UserAction(
        [&] { dynamic_cast<Button&>(Find(words.at(1))).UserDrag(dynamic_cast<Button&>(Find(words.at(2)))); });
  }
  if (words[0] == "day") return clock_.Set({{2026, 11, number(1)}, 12, 0, 0});
  if (words[0] == "entry") {
    const std::string entry = step.substr(std::min(step.size(), std::size_t{6}));
    desktop_.Entry = entry.starts_with('#') ? IdOf(std::stoi(entry.substr(1))) : entry;
    return;
  }
  const std::size_t mark = step.find_first_of("=>@");
  Control& control = Find(step.substr(0, mark));
  const std::string value = mark == std::string::npos ? std::string() : step.substr(mark + 1);
  if (desktop_.Front() != &control.Owner()) {
    desktop_.UserAction([&] { desktop_.Activated(control.Owner()); });  // the window is brought to the front
    if (HasFailed()) return;
  }
  switch (mark == std::string::npos ? '.' : step[mark]) {
    case '=':
      return desktop_.UserAction([&] { control.UserSet(value); });
    case '>':
      return desktop_.UserAction([&] { desktop_.PressKey(control, KeyByName(value)); });
    case '@':
      return desktop_.UserAction([&] {
        auto& grid = dynamic_cast<DataGrid&>(control);
        grid.UserRow(value == "last" ? grid.Rows() : std::stoi(value));
      });
    default:
      return desktop_.UserAction([&] { control.UserClick(); });
  }
}

std::string FaultRun::IdOf(int number) {
  // A server's numbers may grow in steps.
  return shop_.Value(
      fmt::format("SELECT ID FROM JOURNAL WHERE ID>={} ORDER BY ID LIMIT {},1", kFirstDocument, number - 1));
}

void FaultRun::OpenDocument(int number) {
  DataGrid& journal = app_->Main.Journal.DataGrid6;
  const std::string id = IdOf(number);
  Step("Form2.TabStrip1=jurn");  // reads it again
  if (HasFailed()) return;
  for (int row = 1; row <= journal.Rows(); ++row) {
    if (journal.CellText(row, "Num") != id) continue;
    // One that couldn't be opened whole stands there all the same; it is closed before it is opened again.
    DocumentForm* const form = app_->StockDocuments.FormOf(journal.CellText(row, "Document"));
    desktop_.UserAction([&] { form->Close(); });
    desktop_.UserAction([&] { journal.UserRow(row); });
    return Step("Form2.DataGrid6>Enter");
  }
  throw Error("the journal lacks document " + id);
}

bool FaultRun::IsGone(std::string_view steps) {
  const std::string first = Split(Split(steps, "; ").front(), ".").front();
  const Form* const form = desktop_.FindForm(first);
  return form != nullptr && !form->IsVisible();
}

// The shop

std::map<std::string, std::string> FaultRun::Checksums() {
  std::string all;
  for (const std::string& table : tables_) all += (all.empty() ? "" : ",") + table;
  std::map<std::string, std::string> checksums;
  for (const std::vector<std::string>& row : shop_.Rows("CHECKSUM TABLE " + all)) {
    const std::string own = shop_.Address().schema + ".";
    checksums[row[0].starts_with(own) ? row[0].substr(own.size()) : row[0]] = row[1];
  }
  return checksums;
}

FaultRun::Rows FaultRun::TableRows(const std::string& table) {
  Rows rows;
  for (std::vector<std::string>& cells : shop_.Rows(fmt::format("SELECT {} FROM {}", columns_.at(table), table))) {
    std::string row;
    for (std::string& cell : cells) row += (row.empty() ? "" : "|") + Plain(std::move(cell));
    rows.push_back(std::move(row));
  }
  std::sort(rows.begin(), rows.end());
  return rows;
}

FaultRun::State FaultRun::Look() {
  journal_ = shop_.Column("SELECT ID FROM JOURNAL ORDER BY ID");
  State state;
  seen_ = Checksums();
  for (const auto& [table, checksum] : seen_) {
    if (checksum == checksums_[table]) continue;
    Rows rows = TableRows(table);
    if (rows != kept_rows_[table]) state[table] = std::move(rows);
  }
  return state;
}

std::string FaultRun::Plain(std::string text) const {
  for (std::size_t at = text.find("91"); at != std::string::npos; at = text.find("91", at + 1)) {
    const std::size_t first = text.find_last_not_of("0123456789", at) + 1;
    const std::string number = text.substr(first, text.find_first_not_of("0123456789", at) - first);
    if (!IsDocumentNumber(number)) continue;
    const auto found = std::find(journal_.begin(), journal_.end(), number);
    text.replace(at, 6, found == journal_.end() ? "#gone" : fmt::format("#{}", found - journal_.begin() + 1));
  }
  return text;
}

FaultRun::Rows FaultRun::Screen() {
  static const std::set<std::string> kIgnored = {"SelStart", "SelLength",   "FirstRow",
                                                 "Columns",  "ToolTipText", "Items"};
  Rows screen;
  for (const Form* form : desktop_.LoadedForms()) {
    if (!form->IsVisible()) continue;
    screen.push_back(form->Name() + " " + Plain(form->Caption()));
    for (Control* control : form->Controls()) {
      const std::string name = form->Name() + "." + control->Name();
      for (const PropertyBase* property : control->Properties()) {
        if (kIgnored.contains(std::string(property->Name()))) continue;
        screen.push_back(fmt::format("{}.{} {}", name, property->Name(), Plain(property->AsText())));
      }
      const auto* grid = dynamic_cast<const DataGrid*>(control);
      if (grid == nullptr || !grid->IsShown()) continue;
      screen.push_back(fmt::format("{} {} of {}", name, grid->Row(), grid->Rows()));
      for (int row = 1; row <= std::min(grid->Rows(), 20); ++row) {
        std::string cells;
        for (std::size_t column = 0; column < grid->Columns().size(); ++column) {
          const std::string& header = grid->Columns()[column].header;
          if (header != "ID" && header != "Nrow") cells += "|" + Plain(grid->CellText(row, static_cast<int>(column)));
        }
        screen.push_back(name + cells);
      }
    }
  }
  return screen;
}

// The proof

void FaultRun::Prove(const Action& action) {
  const Whole whole = Record(action);
  const int statements = static_cast<int>(whole.statements.size());
  EXPECT_GT(statements, 0) << "the action sends nothing";
  constexpr std::pair<Fault, const char*> kFaults[] = {
      {Fault::kRefused, "refused"}, {Fault::kCut, "link cut at"}, {Fault::kAnswerLost, "no answer to"}};
  for (const auto& [fault, name] : kFaults) {
    for (int statement = 1; statement <= statements; ++statement) {
      const std::string& broken = whole.statements[static_cast<std::size_t>(statement - 1)];
      // A question that gets no answer is one that was never asked.
      if (fault == Fault::kAnswerLost && !IsWrite(broken)) continue;
      SCOPED_TRACE(fmt::format("{} {} of {}: {}", name, statement, statements, broken));
      Action here = action;
      if (fault == Fault::kAnswerLost && action.doubles) here.again = Again::kOnTop;
      Break(here, whole, statement, fault);
    }
  }
}

FaultRun::Whole FaultRun::Record(const Action& action) {
  Restart();
  Do(action.before);
  EXPECT_FALSE(HasFailed()) << "before: " << desktop_.Boxes.back();
  desktop_.Boxes.clear();
  Whole whole;
  {
    Recorder recorder(*this, whole);
    LayFaults(&recorder);
    Do(action.action);
    LayFaults(&faults_);
  }
  EXPECT_FALSE(HasFailed()) << "the whole run: " << desktop_.Boxes.back();
  whole.boxes = desktop_.Boxes;
  whole.end = Look();
  whole.screen = Screen();
  return whole;
}

void FaultRun::Break(const Action& action, const Whole& whole, int statement, Fault fault) {
  const std::string& broken = whole.statements[static_cast<std::size_t>(statement - 1)];
  const auto ran = static_cast<std::size_t>(fault == Fault::kAnswerLost ? statement : statement - 1);
  const State& expected = ran < whole.before.size() ? whole.before[ran] : whole.end;
  Restart();
  Do(action.before);
  desktop_.Boxes.clear();
  faults_.Forget();
  if (fault == Fault::kRefused) faults_.FailAt(statement);
  if (fault == Fault::kCut) faults_.CutAt(statement);
  if (fault == Fault::kAnswerLost) faults_.LoseAnswerAt(statement);
  Do(action.action);
  ASSERT_GE(faults_.Statements().size(), static_cast<std::size_t>(statement)) << "the statement never came";

  // One box at most as a rule, beside those of the whole run.
  std::vector<std::string> boxes = desktop_.Boxes;
  for (const std::string& usual : whole.boxes) {
    const auto found = std::find(boxes.begin(), boxes.end(), usual);
    if (found != boxes.end()) boxes.erase(found);
  }
  EXPECT_LE(boxes.size(), action.boxes) << testing::PrintToString(boxes);
  if (!action.box.empty()) {
    EXPECT_EQ(boxes, std::vector{action.box});
  }
  if (const std::size_t mark = action.shows.find('='); mark != std::string::npos) {
    EXPECT_EQ(Find(action.shows.substr(0, mark)).Ask("Caption"), action.shows.substr(mark + 1));
  }
  // A program that can't be started ends after its box.
  if (action.action != "restart") {
    EXPECT_TRUE(app_->Main.IsVisible());
    EXPECT_FALSE(desktop_.ExitCode().has_value()) << "the program has ended";
  }

  const State left = Look();
  // A lamp is green over nothing that isn't whole.
  for (const Form* form : desktop_.LoadedForms()) {
    const auto* lamp = form->FindControl("LblRun");
    if (lamp != nullptr && form->IsVisible() && lamp->BackColor() == kLampPosted) ExpectWhole(left);
  }
  // Nor does a window that can't tidy up stop what follows it.
  const bool tidies = broken.starts_with("DELETE FROM DOCUMENT WHERE TYP=") &&
                      faults_.Statements().size() > static_cast<std::size_t>(statement);
  const bool goes_on = action.goes_on || (fault == Fault::kRefused && (IsGuarded(broken) || tidies));
  if (!goes_on) {
    EXPECT_TRUE(left == expected) << "it stands:\n"
                                  << Shown(left) << "where the first statements make:\n"
                                  << Shown(expected);
  }
  if (action.again != Again::kUnproved && !(goes_on && action.again != Again::kSame)) Repeat(action, whole, left);
}

void FaultRun::Repeat(const Action& action, const Whole& whole, const State& left) {
  const bool mended = !action.mend.empty();
  const std::string& steps = mended ? action.mend : action.action;
  desktop_.Boxes.clear();
  if (IsGone(steps)) {
    // All was done but tidying up; what stayed of the working copy goes with the next document of the kind.
    State state = left;
    State end = whole.end;
    for (State* one : {&state, &end}) {
      for (const char* scratch : {"DOCUMENT", "DOCINVENT", "DOCPRICE"}) one->erase(scratch);
    }
    EXPECT_TRUE(state == end) << Shown(state) << "and not\n" << Shown(end);
    return;
  }
  Do(steps);
  EXPECT_FALSE(HasFailed()) << "once more: " << desktop_.Boxes.back();
  const State reached = Look();
  const State now = Without(action.besides, reached);
  const State wanted = Without(action.besides, Expected(action, whole, left));
  EXPECT_TRUE(now == wanted) << "once more it stands:\n" << Shown(now) << "where it should:\n" << Shown(wanted);
  if (action.again == Again::kSame && !mended && !action.goes_on) {
    const Rows screen = Screen();
    const auto [seen, usual] = std::mismatch(screen.begin(), screen.end(), whole.screen.begin(), whole.screen.end());
    EXPECT_TRUE(screen == whole.screen) << "once more it shows " << (seen == screen.end() ? "less" : *seen)
                                        << "\nwhere it should " << (usual == whole.screen.end() ? "less" : *usual);
  }
  if (action.whole) ExpectWhole(reached);
}

void FaultRun::ExpectWhole(const State& state) {
  if (state == last_whole_) return;
  last_whole_ = state;
  Connection connection;
  connection.Open(MainConnectionString(shop_.Address()));
  const check::Findings findings = check::CheckShop(connection);
  EXPECT_TRUE(findings.IsWhole()) << findings.Report();
}

FaultRun::State FaultRun::Without(const std::string& text, State state) {
  for (auto& [table, rows] : state) {
    for (std::string& row : rows) {
      if (const std::size_t at = row.find(text); at != std::string::npos) row.erase(at, text.size());
    }
    std::sort(rows.begin(), rows.end());
  }
  return state;
}

FaultRun::State FaultRun::Expected(const Action& action, const Whole& whole, const State& left) const {
  const State& start = whole.before.front();
  switch (action.again) {
    case Again::kStays:
      return left == start ? whole.end : left;
    case Again::kOnTop: {
      State state = whole.end;
      for (const auto& [table, rows] : left) {
        Rows added;
        const Rows& kept = start.contains(table) ? start.at(table) : kept_rows_.at(table);
        std::set_difference(rows.begin(), rows.end(), kept.begin(), kept.end(), std::back_inserter(added));
        state[table].insert(state[table].end(), added.begin(), added.end());
        std::sort(state[table].begin(), state[table].end());
      }
      return state;
    }
    default:
      return whole.end;
  }
}

}  // namespace zrt::test
