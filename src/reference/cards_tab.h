#pragma once

#include "core/session.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// Discount cards and the staff list, beside the catalogue on the tab "Справочники".
class CardsTab {
 public:
  CardsTab(Form& form, Session& session);

  DataGrid DataGrid5;  ///< discount cards
  Button CmdDKNew;
  Button CmdDKShow;
  Button CmdDKDel;
  Button CmdVDk;
  Button CmdClrAllDKard;
  DataGrid DataGrid9;  ///< waiters

  /// Open their sets at start. Throw DatabaseError.
  void OpenCards();
  void OpenCardKinds();
  void OpenWaiters();

  /// Takes the editing buttons of the cards away, for the restricted mode.
  void ForbidEditing();

 private:
  void FormatCardGrid();

  Session& session_;
};

}  // namespace zrt
