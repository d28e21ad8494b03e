#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/app.h"
#include "play/script.h"
#include "support/headless_desktop.h"
#include "support/recording_machine.h"

namespace zrt::play {

/// Where a play says more than whether it holds; what isn't set isn't said.
struct PlayOutput {
  std::ostream* grids = nullptr;        ///< each grid whose number of rows a line expects, for counts of their own
  std::ostream* dump = nullptr;         ///< what `dump` prints
  std::ostream* differences = nullptr;  ///< the failures of lines; the play goes on then
};

/// Why a play stopped. Not a std::exception, so that no handler of the program takes it for one of its own failures.
struct Failure {
  std::string text;
};

/// The operator of a play: the program's third host. Runs the lines of a script on the real forms and a real server.
class Player final : public test::HeadlessDesktop {
 public:
  /// `drives`: empty folder for the drives of the program's machine.
  Player(DatabaseAddress database, std::filesystem::path drives, const PlayOutput& output = {});
  ~Player() override;

  /// Throws Failure, naming the line, what was expected and what was there; where the output takes differences, the
  /// first of a line goes there and the play goes on.
  void Run(const std::vector<Line>& script);

  /// How many lines didn't hold in a play that goes on.
  int Differences() const { return differences_; }

 protected:
  BoxAnswer DoMsgBox(const Message& message) override;
  std::string DoInputBox(const std::string& prompt, const std::string& title, const std::string& preset) override;
  void DoModalLoop(Form& form) override;
  void DoRuntimeError(const std::exception& error) override;

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
  class Faults;

  void Step();
  void Perform(const Line& line);
  void Act(const std::function<void()>& action);
  Box TakeBox(const std::string& text, const std::string& title, bool input);

  // Actions of the language.
  void Start(const Line& line);
  void Stop(const Line& line);
  void UseForm(const Line& line);
  void Announce(const Line& line);
  void Set(const Line& line);
  void Press(const Line& line);
  void GoToRow(const Line& line);
  void Pick(const Line& line);
  void Drag(const Line& line);
  void FireTimer(const Line& line);
  void Expect(const Line& line);
  void CheckCell(const Line& line);
  /// A line with the grid's name and the number of its rows, then the rows as shown, cells apart by tabs.
  static void PrintGrid(const DataGrid& grid, std::ostream& out);
  void CheckRows(const Line& line);
  void CheckLines(const Line& line);
  void CheckPrinted(const Line& line);
  void CheckWorkbook(const Line& line);
  void CheckFile(const Line& line);
  void CheckNoFile(const Line& line);
  void WriteFile(const Line& line);
  void SetFault(const Line& line);
  void SetClock(const Line& line);
  void RunSql(const Line& line);
  void AnnounceError(const Line& line);
  void Close(const Line& line);
  /// Everything that the current form shows.
  void Dump(const Line& line);

  Form& CurrentForm() const;
  Control& Find(const std::string& name) const;
  Control& Usable(const std::string& name) const;
  template <class T>
  T& As(Control& control) const;

  DatabaseAddress database_;
  DriveMap drives_;
  PlayOutput output_;
  test::FixedClock clock_;
  test::RecordingPrinter printer_;
  test::RecordingSpreadsheet spreadsheet_;
  std::unique_ptr<Faults> faults_;
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

}  // namespace zrt::play
