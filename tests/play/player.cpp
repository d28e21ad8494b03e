#include "play/player.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <fnmatch.h>

#include <charconv>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string_view>

#include "app/app.h"
#include "core/errors.h"
#include "core/text.h"
#include "play/script.h"
#include "support/headless_desktop.h"
#include "support/recording_machine.h"
#include "support/scripted_faults.h"
#include "support/temporary_folder.h"

namespace zrt::play {

namespace {

[[noreturn]] void Fail(const std::string& text) {
  throw Failure{text};
}

void CheckEqual(const std::string& what, const std::string& expected, const std::string& found) {
  if (expected != found) Fail(what + "\n  expected: " + expected + "\n  found:    " + found);
}

const std::map<std::string, BoxIcon> kIcons = {{"critical", BoxIcon::kCritical},
                                               {"question", BoxIcon::kQuestion},
                                               {"exclamation", BoxIcon::kExclamation},
                                               {"information", BoxIcon::kInformation},
                                               {"none", BoxIcon::kNone}};
const std::map<std::string, BoxAnswer> kAnswers = {
    {"OK", BoxAnswer::kOk}, {"Cancel", BoxAnswer::kCancel}, {"Yes", BoxAnswer::kYes}, {"No", BoxAnswer::kNo}};

const std::string& Word(const Line& line, std::size_t index) {
  if (index >= line.words.size()) Fail("the action wants more words");
  return line.words[index];
}

int Number(const Line& line, std::size_t index) {
  const std::string& word = Word(line, index);
  int number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size()) Fail("a number is wanted, not \"" + word + "\"");
  return number;
}

/// The lines that stand below an action must equal what was found.
void CheckBlock(const std::string& what, const Line& line, const std::vector<std::string>& found) {
  const auto shown = [](const std::vector<std::string>& rows) {
    return rows.empty() ? std::string("(nothing)") : fmt::format("\n\t{}", fmt::join(rows, "\n\t"));
  };
  CheckEqual(what, shown(line.block), shown(found));
}

/// The files of this name; "*" stands for any characters inside it.
std::vector<std::filesystem::path> Fitting(const std::filesystem::path& pattern) {
  std::vector<std::filesystem::path> found;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(pattern.parent_path(), error)) {
    const std::string name = entry.path().filename().string();
    if (fnmatch(pattern.filename().c_str(), name.c_str(), FNM_NOESCAPE) == 0) found.push_back(entry.path());
  }
  return found;
}

/// The one file of this name.
std::filesystem::path Match(const std::filesystem::path& pattern) {
  const std::vector<std::filesystem::path> found = Fitting(pattern);
  if (found.size() != 1) Fail(std::to_string(found.size()) + " files fit " + pattern.string());
  return found.front();
}

/// The operator of a play: the program's third host. Runs the lines of a script on the real forms and a real server.
class Operator final : public test::HeadlessDesktop {
 public:
  Operator(const DatabaseAddress& database, const std::filesystem::path& drives, const PlayOptions& options)
      : database_(database), drives_(drives), options_(options) {
    terminal_.Open(MainConnectionString(database_));
  }

  int Run(const std::vector<Line>& script) {
    script_ = &script;
    next_ = 0;
    while (next_ < script.size()) Step();
    if (!announced_.boxes.empty() || announced_.error) Fail("the play ends with an announcement");
    return differences_;
  }

 protected:
  BoxAnswer DoMsgBox(const Message& message) override {
    const Box box = TakeBox(message.text, message.title, false);
    if (box.icon && *box.icon != message.icon) Fail("the box has another icon: " + message.text);
    const BoxAnswer answer = kAnswers.at(box.answer);
    if (!test::Offers(message.buttons, answer)) Fail("the box has no button " + box.answer + ": " + message.text);
    return answer;
  }

  std::string DoInputBox(const std::string& prompt, const std::string& title, const std::string&) override {
    return TakeBox(prompt, title, true).answer;
  }

  void DoModalLoop(Form& form) override {
    Form* opener = form_;
    form_ = &form;
    modal_.push_back(&form);
    while (form.IsVisible()) {
      if (next_ == script_->size()) Fail("the play ends while " + form.Name() + " is open");
      Step();
    }
    modal_.pop_back();
    form_ = opener;
  }

  void DoRuntimeError(const std::exception& error) override {
    // A line that asks for what can't be done is no failure of the program's.
    if (dynamic_cast<const ScriptError*>(&error) != nullptr) Fail(error.what());
    if (running_.empty() || !running_.back().error) Fail(std::string("a run-time error: ") + error.what());
    running_.back().error = false;
  }

 private:
  /// An announced box.
  struct Box {
    std::string text;  ///< with the prescribed LF CR where it holds a CR, else with plain breaks
    std::optional<BoxIcon> icon;
    std::optional<std::string> title;
    std::string answer;
    bool input = false;  ///< the answer was quoted: an input box
  };
  /// What was announced for one action.
  struct Announcement {
    std::deque<Box> boxes;
    bool error = false;
  };

  void Step() {
    const Line& line = script_->at(next_++);
    std::string said;
    try {
      return Perform(line);
    } catch (const Failure& failure) {
      said = failure.text;
    } catch (const Error& error) {
      said = error.what();
    }
    // An inner line has named itself already.
    if (!said.starts_with("line ")) said = fmt::format("line {}: {}\n  {}", line.number, line.text, said);
    if (options_.differences == nullptr) throw Failure{said};
    ++differences_;
    *options_.differences << said << "\n";
    announced_ = {};
  }

  void Perform(const Line& line) {
    struct Action {
      void (Operator::*run)(const Line&);
      std::size_t least = 1, most = 1;  ///< words, its own name included
      bool takes_block = false;
    };
    constexpr std::size_t kMany = 99;
    static const std::map<std::string, Action> kActions = {
        {"start", {&Operator::Start}},
        {"stop", {&Operator::Stop}},
        {"close", {&Operator::Close}},
        {"error", {&Operator::AnnounceError}},
        {"dump", {&Operator::Dump}},
        {"clock", {&Operator::SetClock, 3, 3}},
        {"sql", {&Operator::RunSql, 2, 2}},
        {"form", {&Operator::UseForm, 2, 2}},
        {"dialog", {&Operator::Announce, 4, 6}},
        {"set", {&Operator::Set, 3, 3}},
        {"tab", {&Operator::ChooseTab, 2, 2}},
        {"menu", {&Operator::Press, 2, 2}},
        {"click", {&Operator::Press, 2, 2}},
        {"dblclick", {&Operator::Press, 2, 2}},
        {"key", {&Operator::Press, 3, 3}},
        {"row", {&Operator::GoToRow, 3, 3}},
        {"pick", {&Operator::Pick, 3, 3}},
        {"drag", {&Operator::Drag, 3, 3}},
        {"timer", {&Operator::FireTimer, 2, 3}},
        {"expect", {&Operator::Expect, 3, kMany}},
        {"cell", {&Operator::CheckCells, 5, kMany}},
        {"rows", {.run = &Operator::CheckRows, .least = 2, .most = 2, .takes_block = true}},
        {"file", {.run = &Operator::CheckFile, .least = 2, .most = 2, .takes_block = true}},
        {"no-file", {&Operator::CheckNoFile, 2, 2}},
        {"file-write", {.run = &Operator::WriteFile, .least = 2, .most = 2, .takes_block = true}},
        {"lines", {.run = &Operator::CheckLines, .least = 2, .most = 2, .takes_block = true}},
        {"printed", {.run = &Operator::CheckPrinted, .most = 2, .takes_block = true}},
        {"workbook", {.run = &Operator::CheckWorkbook, .takes_block = true}},
        {"fault", {&Operator::SetFault, 2, 3}}};

    const auto found = kActions.find(line.words.front());
    if (found == kActions.end()) Fail("no action is called \"" + line.words.front() + "\"");
    const Action& action = found->second;
    if (line.words.size() < action.least) Fail("the action wants more words");
    if (line.words.size() > action.most)
      Fail("the action takes no more than " + std::to_string(action.most) + " words");
    if (action.most == kMany && line.words.size() % 2 == 0) Fail("a value is wanted behind each name");
    if (!action.takes_block && !line.block.empty()) Fail("the action takes no lines below it");
    (this->*action.run)(line);
  }

  void Act(const std::function<void()>& action) {
    running_.push_back(std::exchange(announced_, {}));
    const std::size_t depth = running_.size();
    try {
      UserAction(action);
    } catch (const Failure&) {
      running_.resize(depth - 1);
      throw;
    }
    Announcement left = std::move(running_.back());
    running_.pop_back();
    // The action that hides a modal form ends here, but the one that had opened it goes on: what is left was meant for
    // it.
    if (!modal_.empty() && !modal_.back()->IsVisible() && !running_.empty()) {
      auto& outer = running_.back();
      outer.boxes.insert(outer.boxes.begin(), left.boxes.begin(), left.boxes.end());
      outer.error = outer.error || left.error;
      return;
    }
    if (!left.boxes.empty()) Fail("this box stayed away: " + left.boxes.front().text);
    if (left.error) Fail("the run-time error stayed away");
    if (form_ != nullptr && !form_->IsVisible()) form_ = Front();
  }

  Box TakeBox(const std::string& text, const std::string& title, bool input) {
    if (running_.empty() || running_.back().boxes.empty()) Fail("an unannounced box: " + WithPlainBreaks(text));
    Box box = std::move(running_.back().boxes.front());
    running_.back().boxes.pop_front();
    const bool exact = box.text.find('\r') != std::string::npos;
    CheckEqual("the box", box.text, exact ? text : WithPlainBreaks(text));
    if (box.input != input) Fail(std::string(input ? "an input box" : "a plain box") + " came: " + text);
    if (box.title) CheckEqual("the title of the box", *box.title, title);
    return box;
  }

  void Start(const Line&) {
    if (app_) Fail("the program runs already");
    exit_code_.reset();
    app_ = std::make_unique<App>(*this, clock_, drives_, AppSettings{database_, "zrt", printer_, spreadsheet_});
    app_->TheSession.MainConnection.SetFaultSource(&faults_);
    Act([this] {
      app_->Start();
      app_->Splash.Timer1.UserFire();
    });
    if (app_->IsRunning()) {
      form_ = &app_->Main;
    } else {
      app_.reset();
      form_ = nullptr;
    }
  }

  void Stop(const Line&) {
    if (!app_) Fail("the program doesn't run");
    Act([this] { app_->Main.Close(); });
    if (exit_code_ != 0) Fail("the program didn't end");
    form_ = nullptr;
    app_.reset();
  }

  void UseForm(const Line& line) {
    Form* form = FindForm(Word(line, 1));
    if (form == nullptr) Fail("no such form");
    if (!form->IsVisible()) Fail("the form isn't shown");
    if (!modal_.empty() && modal_.back() != form) Fail(modal_.back()->Name() + " is open over it");
    form_ = form;
    Act([&] { Activated(*form); });
  }

  void Announce(const Line& line) {
    Box box;
    box.text = Word(line, 1);
    std::size_t at = 2;
    if (Word(line, at) != "->" && !line.quoted[at]) {
      const auto icon = kIcons.find(Word(line, at++));
      if (icon == kIcons.end()) Fail("no such icon");
      box.icon = icon->second;
    }
    if (line.quoted.at(at)) box.title = Word(line, at++);
    if (Word(line, at++) != "->") Fail("\"->\" is wanted before the answer");
    box.answer = Word(line, at);
    box.input = line.quoted[at];
    if (at + 1 != line.words.size()) Fail("nothing stands behind the answer");
    if (!box.input && kAnswers.count(box.answer) == 0) Fail("no such answer");
    announced_.boxes.push_back(std::move(box));
  }

  void AnnounceError(const Line&) { announced_.error = true; }

  void RunSql(const Line& line) { terminal_.Execute(Word(line, 1)); }

  void Close(const Line&) {
    Form& closing = CurrentForm();
    Act([&] { closing.Close(); });
  }

  void Set(const Line& line) {
    Control& control = Usable(Word(line, 1));
    Act([&] { control.UserSet(Word(line, 2)); });
  }

  void ChooseTab(const Line& line) {
    for (Control* control : CurrentForm().Controls()) {
      auto* strip = dynamic_cast<TabStrip*>(control);
      if (strip != nullptr) return Act([&] { strip->UserChoose(Word(line, 1)); });
    }
    Fail("the form has no tabs");
  }

  void Press(const Line& line) {
    const std::string& verb = Word(line, 0);
    Control& control = Usable(Word(line, 1));
    if (verb == "menu") As<Menu>(control);
    const std::optional<Key> key = verb == "key" ? std::optional(test::KeyByName(Word(line, 2))) : std::nullopt;
    Act([&] { key ? PressKey(control, *key) : verb == "dblclick" ? control.UserDblClick() : control.UserClick(); });
  }

  void GoToRow(const Line& line) {
    auto& grid = As<DataGrid>(Usable(Word(line, 1)));
    const int row = Number(line, 2);
    if (row < 1 || row > grid.Rows()) Fail("the grid has " + std::to_string(grid.Rows()) + " rows");
    Act([&] { grid.UserRow(row); });
  }

  void Pick(const Line& line) {
    auto& month = As<MonthView>(Usable(Word(line, 1)));
    const std::optional<Date> day = ParseDate(Word(line, 2));
    if (!day) Fail("no such day");
    Act([&] { month.UserPick(*day); });
  }

  void Drag(const Line& line) {
    auto& source = As<Button>(Usable(Word(line, 1)));
    auto& target = As<Button>(Usable(Word(line, 2)));
    Act([&] { source.UserDrag(target); });
  }

  void FireTimer(const Line& line) {
    Timer* timer = CurrentForm().FindTimer(Word(line, 1));
    if (timer == nullptr) Fail("no such timer");
    if (!timer->Enabled()) Fail("the timer doesn't run");
    if (line.words.size() > 2) CheckEqual("its milliseconds", Word(line, 2), timer->Interval.AsText());
    Act([&] { timer->UserFire(); });
  }

  void Expect(const Line& line) {
    for (std::size_t at = 1; at < line.words.size(); at += 2) CheckProperty(line.words[at], line.words[at + 1]);
  }

  void CheckProperty(const std::string& what, const std::string& expected) {
    const std::size_t dot = what.rfind('.');
    if (dot == std::string::npos) Fail("CONTROL.PROPERTY is wanted");
    if (what == "form.Focus") return CheckEqual(what, expected, Focused() == nullptr ? "" : Focused()->Name());
    const std::string owner = what.substr(0, dot);
    const Element& element = owner == "form" ? static_cast<const Element&>(CurrentForm()) : Find(owner);
    const std::optional<std::string> value = element.Ask(what.substr(dot + 1));
    if (!value) Fail("no such property");
    CheckEqual(what, expected, *value);
  }

  void CheckCells(const Line& line) {
    const auto& grid = As<DataGrid>(Find(Word(line, 1)));
    for (std::size_t at = 3; at < line.words.size(); at += 2) {
      CheckEqual(line.words[at], line.words[at + 1], grid.CellText(Number(line, 2), line.words[at]));
    }
  }

  void CheckLines(const Line& line) {
    const auto& list = As<ListBox>(Find(Word(line, 1)));
    CheckBlock("the lines", line, list.Items());
  }

  void CheckPrinted(const Line& line) {
    if (printer_.Jobs.size() != 1) Fail(std::to_string(printer_.Jobs.size()) + " documents were printed");
    if (line.words.size() > 1) CheckEqual("points", Word(line, 1), std::to_string(printer_.Jobs.front().points));
    std::vector<std::string> found;
    for (const std::vector<PrintedPiece>& pieces : printer_.Jobs.front().lines) {
      std::string& row = found.emplace_back();
      for (const PrintedPiece& piece : pieces)
        row += fmt::format("{}{}:{}", row.empty() ? "" : "|", piece.left, piece.text);
    }
    printer_.Jobs.clear();
    CheckBlock("what was printed", line, found);
  }

  void CheckWorkbook(const Line& line) {
    if (spreadsheet_.Books.size() != 1) Fail(std::to_string(spreadsheet_.Books.size()) + " workbooks were opened");
    const Workbook book = std::move(spreadsheet_.Books.front());
    spreadsheet_.Books.clear();
    std::vector<std::string> found;
    for (const Workbook::TextCell& cell : book.Cells) {
      found.push_back(fmt::format("{},{}{} {}", cell.row, cell.column, cell.bold ? "*" : "", cell.text));
    }
    for (const Workbook::ColumnSpan& span : book.ColumnWidths) {
      found.push_back(fmt::format("width {}-{} {}", span.first, span.last, span.width));
    }
    for (const Workbook::RowHeight& row : book.RowHeights)
      found.push_back(fmt::format("height {} {}", row.row, row.height));
    for (const std::string& status : book.StatusBar) found.push_back("status " + status);
    CheckBlock("the workbook", line, found);
  }

  void Dump(const Line&) {
    if (options_.dump == nullptr) return;
    std::ostream& out = *options_.dump;
    out << CurrentForm().Name() << ": " << CurrentForm().Caption() << "\n";
    for (Control* control : CurrentForm().Controls()) {
      if (!control->IsShown()) continue;
      for (const char* property : {"Caption", "Text"}) {
        if (const auto value = control->Ask(property)) out << control->Name() << "\t" << *value << "\n";
      }
      if (const auto* list = dynamic_cast<const ListBox*>(control)) {
        out << list->Name() << "\n";
        for (const std::string& item : list->Items()) out << "\t" << item << "\n";
      }
      if (const auto* grid = dynamic_cast<const DataGrid*>(control)) {
        for (const GridColumn& column : grid->Columns()) out << column.header << "\t";
        out << "\n";
        for (int row = 1; row <= grid->Rows(); ++row) {
          for (int column = 0; column < std::ssize(grid->Columns()); ++column)
            out << grid->CellText(row, column) << "\t";
          out << "\n";
        }
      }
    }
  }

  void CheckRows(const Line& line) {
    Recordset set;
    set.Open(Word(line, 1), terminal_);
    std::vector<std::string> found;
    for (int row = 1; row <= set.RecordCount(); ++row) {
      std::vector<std::string> cells;
      for (int field = 0; field < set.FieldCount(); ++field) {
        const Cell cell = set.At(row, field);
        cells.push_back(cell.IsNull() ? "NULL" : cell.Text());
      }
      found.push_back(fmt::format("{}", fmt::join(cells, "|")));
    }
    CheckBlock("the rows", line, found);
  }

  void CheckFile(const Line& line) {
    std::ifstream file(Match(drives_.ToNative(Word(line, 1))), std::ios::binary);
    if (!file) Fail("there is no such file");
    std::vector<std::string> found;
    for (std::string row; std::getline(file, row);) {
      if (file.eof() || row.empty() || row.back() != '\r')
        Fail("a line of the file doesn't end in CR LF: " + FromWindows1251(row));
      row.pop_back();
      found.push_back(FromWindows1251(row));
    }
    CheckBlock("the file", line, found);
  }

  void CheckNoFile(const Line& line) {
    const std::vector<std::filesystem::path> found = Fitting(drives_.ToNative(Word(line, 1)));
    if (!found.empty()) Fail("there is " + found.front().string());
  }

  void WriteFile(const Line& line) {
    const std::filesystem::path path = drives_.ToNative(Word(line, 1));
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    for (const std::string& row : line.block) file << ToWindows1251(row) << "\r\n";
    if (!file.flush()) Fail("the file can't be written");
  }

  void SetFault(const Line& line) {
    const bool cut = line.words.size() > 2;
    if (cut && Word(line, 2) != "cut") Fail("\"cut\" or nothing is wanted");
    cut ? faults_.CutAt(Number(line, 1)) : faults_.FailAt(Number(line, 1));
  }

  void SetClock(const Line& line) {
    const std::optional<DateTime> now = ParseSqlDateTime(Word(line, 1) + " " + Word(line, 2));
    if (!now) Fail("no such moment");
    clock_.Set(*now);
  }

  Form& CurrentForm() const {
    if (form_ == nullptr) Fail("no form is shown");
    return *form_;
  }

  Control& Find(const std::string& name) const {
    Control* control = CurrentForm().FindControl(name);
    if (control == nullptr) Fail(CurrentForm().Name() + " has no control " + name);
    return *control;
  }

  Control& Usable(const std::string& name) const {
    Control& control = Find(name);
    if (!control.IsShown()) Fail(name + " isn't visible");
    if (!control.IsEnabled()) Fail(name + " is disabled");
    return control;
  }

  template <class T>
  T& As(Control& control) const {
    auto* right = dynamic_cast<T*>(&control);
    if (right == nullptr) Fail("the action doesn't fit " + control.Name());
    return *right;
  }

  DatabaseAddress database_;
  DriveMap drives_;
  PlayOptions options_;
  test::FixedClock clock_;
  test::RecordingPrinter printer_;
  test::RecordingSpreadsheet spreadsheet_;
  test::ScriptedFaults faults_;
  std::unique_ptr<App> app_;
  Connection terminal_;  ///< the way of a terminal to the database

  const std::vector<Line>* script_ = nullptr;
  std::size_t next_ = 0;
  int differences_ = 0;
  Form* form_ = nullptr;
  std::vector<Form*> modal_;
  Announcement announced_;
  std::vector<Announcement> running_;  ///< one for each action under way, the innermost last
};

}  // namespace

int Play(const std::string& text, const DatabaseAddress& database, const PlayOptions& options) {
  const std::vector<Line> script = ReadScript(text);
  const test::TemporaryFolder own;
  return Operator(database, own.Path(), options).Run(script);
}

bool PlayFile(const std::string& name, const DatabaseAddress& database, const PlayOptions& options) {
  try {
    std::ifstream file(name, std::ios::binary);
    if (!file) throw FileError(name, "can't be read");
    std::ostringstream text;
    text << file.rdbuf();
    return Play(text.str(), database, options) == 0;
  } catch (const Failure& failure) {
    std::cerr << name << ", " << failure.text << "\n";
  } catch (const Error& error) {
    std::cerr << name << ": " << error.what() << "\n";
  }
  return false;
}

}  // namespace zrt::play
