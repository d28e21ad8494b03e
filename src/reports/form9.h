#pragma once

#include <array>
#include <optional>

#include "platform/printer.h"
#include "reports/kat_names.h"
#include "reports/period_choice.h"
#include "ui/form.h"

namespace zrt {

/// The window of the text reports: choice of the period and the report, its lines, their printing, and the names that
/// the shop gives to the places that sell.
class Form9 final : public Form {
 public:
  /// `printer` must outlive the form.
  Form9(Desktop& desktop, Session& session, Printer& printer);

  Label Label3{*this, "Label3"};
  PeriodChoice Period;

  Frame Frame1{*this, "Frame1"};
  Button CmdDat{*this, "CmdDat"};
  Button CmdDat1{*this, "CmdDat1"};
  Button CmdDat2{*this, "CmdDat2"};
  CheckBox Check1{*this, "Check1"};  ///< the waiters' report by places
  CheckBox Check2{*this, "Check2"};  ///< the goods' report in its wide form
  std::array<OptionButton, 2> Option1{ControlArray<OptionButton, 2>(*this, "Option1", 0)};  ///< by days, whole span
  ListBox List1{*this, "List1"};
  Button CmdPrint{*this, "CmdPrint"};
  Button CmdRun{*this, "CmdRun"};

  Frame Frame2{*this, "Frame2"};
  /// By kitchen from 0: its own name and those of its three workshops.
  std::array<std::array<TextBox, 4>, 3> TextNames{
      {{{{*this, "Text1"}, {*this, "Text11"}, {*this, "Text12"}, {*this, "Text13"}}},
       {{{*this, "Text2"}, {*this, "Text21"}, {*this, "Text22"}, {*this, "Text23"}}},
       {{{*this, "Text3"}, {*this, "Text31"}, {*this, "Text32"}, {*this, "Text33"}}}}};
  Button CmdSave{*this, "CmdSave"};
  Button CmdBack{*this, "CmdBack"};

 private:
  void Form_Load();
  void Form_Activate();
  void Form_KeyDown(Key& key);
  void CmdDat_Click();
  void CmdDat1_Click();
  void CmdDat2_Click();
  void Check2_Click();
  void CmdPrint_Click();
  void CmdRun_Click();
  void CmdSave_Click();
  void CmdBack_Click();

  /// Gives the window a width even if it is the one asked for last: the operator may have dragged the window since, or
  /// what it held then may have kept it wider.
  void Resize(int twips);
  void ShowWidth(bool wide);
  /// What the report asks for; nothing, after a message, when the choice isn't complete.
  std::optional<ReportSpan> BeginReport();

  Session& session_;
  Printer& printer_;
  KatNames names_;
};

}  // namespace zrt
