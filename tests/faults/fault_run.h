#pragma once

#include <cstddef>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "support/program_test.h"

namespace zrt::test {

/// An operator who answers whatever comes: boxes are kept and agreed to, modal forms stay open for the next step.
class PatientDesktop final : public HeadlessDesktop {
 public:
  std::vector<std::string> Boxes;  ///< all that came, run-time errors with "!" in front
  std::string Entry;               ///< what input boxes are answered with, but for passwords

  void BeginAnew() { exit_code_.reset(); }

 protected:
  BoxAnswer DoMsgBox(const Message& message) override;
  std::string DoInputBox(const std::string& prompt, const std::string& title, const std::string& preset) override;
  void DoModalLoop(Form& form) override;
  void DoRuntimeError(const std::exception& error) override;
};

/// What the same action done once more, after a statement of it had failed, must end in.
enum class Again {
  kSame,      ///< the state of the whole run, on the screen as in the database
  kOnTop,     ///< what was in before the failure, and the whole run's rows besides
  kStays,     ///< what the first statements left, where one of them was in: the action finds nothing more to do
  kUnproved,  ///< see the row's promise
};

/// Something the operator does, in steps parted by "; ":
///   FORM.CONTROL           presses it          FORM.CONTROL=TEXT   types, chooses or ticks
///   FORM.CONTROL>KEY       a key on it         FORM.GRID@ROW       goes to the row, "last" too
///   pick CODE PRODUCT KOL PRICE                the picker delivers to the form of this code
///   open N                                     opens the Nth document from the journal
///   drag FORM.BUTTON FORM.BUTTON               from one button to the other
///   day N                                      it is noon of November the Nth
///   sql STATEMENT                              what somebody else does to the shop
///   restart                                    the program is started
///   entry TEXT                                 answers the input boxes from here on
struct Action {
  std::string name;
  std::string before;  ///< brings the window to where the action begins
  std::string action;  ///< what is broken, statement by statement
  Again again = Again::kSame;
  std::string promise = {};  ///< why it is not kSame
  std::string mend = {};     ///< what the operator does instead of the same once more
  bool whole = true;         ///< zrt_check is content afterwards
  bool goes_on = false;      ///< a failing statement doesn't stop the action, by design
  std::size_t boxes = 1;     ///< how many may come, beside those of the whole run
  std::string box = {};      ///< what a failure says, where that isn't the box of a run-time error
  std::string shows = {};    ///< FORM.LABEL=TEXT that stands there after a failure
  std::string besides = {};  ///< a text of the whole run that may be missing in the end
  bool doubles = false;      ///< a write whose answer was lost comes once more: nobody can tell that it is in

  friend void PrintTo(const Action& action, std::ostream* out) { *out << action.name; }
};

/// The link file that leads to the reserve server.
inline constexpr const char* kReserveLink = "C:\\Korvina\\reserve.udl";

/// A shop with a program and a reserve server on it that can be brought back to where it was in milliseconds.
class FaultRun : protected Program<PatientDesktop> {
 public:
  FaultRun();

  /// Does steps that must not fail, and keeps the shop as it is afterwards as the one that every run begins with.
  void Furnish(const std::vector<std::string>& statements, const std::vector<std::string>& steps);

  const DriveMap& Drives() const { return drives_; }

  /// Runs the action once whole, then with each of its statements refused, then with the link cut at each, then with
  /// the link cut before its answer comes. Reports what is wrong as failures of the test.
  void Prove(const Action& action);

 private:
  using Rows = std::vector<std::string>;
  using State = std::map<std::string, Rows>;  ///< tables whose rows aren't those of the beginning

  /// The state before each statement of the action, and at its end.
  struct Whole {
    std::vector<State> before;
    State end;
    std::vector<std::string> statements;
    std::vector<std::string> boxes;
    Rows screen;
  };
  enum class Fault { kRefused, kCut, kAnswerLost };
  class Recorder;

  void Restore();
  void StartProgram();
  void LayFaults(FaultSource* source);
  void Restart();
  void Do(std::string_view steps);
  void Step(const std::string& step);
  /// The number in the journal of the document that was made as the `number`th.
  std::string IdOf(int number);
  void OpenDocument(int number);
  Control& Find(std::string_view name);
  bool IsGone(std::string_view steps);
  bool HasFailed() const;

  Whole Record(const Action& action);
  void Break(const Action& action, const Whole& whole, int statement, Fault fault);
  void Repeat(const Action& action, const Whole& whole, const State& left);
  void ExpectWhole(const State& state);
  State Expected(const Action& action, const Whole& whole, const State& left) const;
  static State Without(const std::string& text, State state);

  std::map<std::string, std::string> Checksums();
  Rows TableRows(const std::string& table);
  State Look();
  Rows Screen();
  /// Numbers of documents go up from run to run: they stand as their place in the journal.
  std::string Plain(std::string text) const;

  TestDatabase kept_{Stage::kRegister};
  TestDatabase reserve_{Stage::kPlain};           ///< on the same server, which a link file leads to
  FaultSource* source_ = &faults_;                ///< what stands below the program's connection
  std::vector<std::string> tables_;               ///< the shop's by their names, the reserve's with their schema
  std::map<std::string, std::string> columns_;    ///< of each table, without the numbers that the server gives
  std::map<std::string, std::string> checksums_;  ///< of the tables as they were kept
  std::map<std::string, std::string> seen_;  ///< as Look saw them last; empty when it hasn't looked since the start
  State last_whole_;                         ///< what zrt_check was content with last
  std::map<std::string, Rows> kept_rows_;
  std::vector<std::string> journal_;  ///< JOURNAL.ID in their order, as Look found them
};

}  // namespace zrt::test
