#pragma once

#include <string>

#include "core/session.h"
#include "ui/controls.h"
#include "ui/form.h"

namespace zrt {

/// What the two windows that delete old sales have in common: the day up to which, chosen by calendar, and the state of
/// the table.
class ClearingForm : public Form {
 public:
  TextBox Text4{*this, "Text4"};  ///< the last day to go, dd.mm.yyyy
  Button CmdPlusD{*this, "CmdPlusD"};
  MonthView MonthD{*this, "MonthD"};
  Label Label1{*this, "Label1"};
  Button CmdDel{*this, "CmdDel"};
  Label LabelProd{*this, "LabelProd"};

  /// Shows the window, filled anew unless it is open already. Throws DatabaseError.
  void Open();

 protected:
  /// `state_statement` reads the stamps of the table that LabelProd speaks of, the oldest first.
  ClearingForm(Desktop& desktop, std::string name, Session& session, std::string state_statement);

  /// Deletes the sales up to the end of the day in Text4, once the operator has agreed, and puts the window away. A
  /// statement that fails leaves what was deleted before it deleted.
  struct Clearing {
    bool is_lite = false;         ///< cash operations alone
    bool trim_deletions = false;  ///< also cuts SPION to its newest rows, whatever the day
    bool clear_marks = false;     ///< also deletes excise marks; a base without their table comes to no harm
  };
  void ClearSalesData(const Clearing& what);

  Session& session_;

 private:
  void CmdPlusD_Click();
  void MonthD_DateClick();

  void TrimDeletions();
  void ShowState();
  void ShowStateAfterClearingLite();

  std::string state_statement_;
};

class frmClear final : public ClearingForm {
 public:
  frmClear(Desktop& desktop, Session& session);

  CheckBox Check1{*this, "Check1"};  ///< excise marks too
  CheckBox Check2{*this, "Check2"};  ///< deletions too
};

class frmClearLite final : public ClearingForm {
 public:
  frmClearLite(Desktop& desktop, Session& session);
};

}  // namespace zrt
