#pragma once

#include <cstdint>
#include <string>

#include "core/session.h"
#include "reference/frm_dk.h"
#include "reference/frm_vdk.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// Discount cards and the staff list, beside the catalogue on the tab "Справочники".
class CardsTab : public FormSection {
 public:
  CardsTab(Form& form, Session& session, frmDK& card, frmVDk& kinds);

  DataGrid DataGrid5{form_, "DataGrid5"};  ///< discount cards
  Button CmdDKNew{form_, "CmdDKNew"};
  Button CmdDKShow{form_, "CmdDKShow"};
  Button CmdDKDel{form_, "CmdDKDel"};
  Button CmdVDk{form_, "CmdVDk"};
  Button CmdClrAllDKard{form_, "CmdClrAllDKard"};
  DataGrid DataGrid9{form_, "DataGrid9"};  ///< waiters

  /// Reads all cards into RsCards, at start and after every change. The grid stands on the last one then. Throws
  /// DatabaseError.
  void OpenCards();
  /// Opens the staff list at start. Throws DatabaseError.
  void OpenWaiters();

  /// Reads the cards again and goes to the one of this number; to none when no card has it. Throws DatabaseError.
  void ShowCard(std::int16_t rez);

  /// Deletes the card of this number and reads the cards again. What is known of its holder stays. Throws
  /// DatabaseError.
  void DeleteDiscountCard(std::int16_t rez);

  /// Takes the editing buttons of the cards away, for the restricted mode.
  void ForbidEditing();

 private:
  void CmdDKShow_Click();
  void CmdDKDel_Click();
  void CmdClrAllDKard_Click();
  void FormatCardGrid();

  Recordset& Cards() { return session_.Pool().RsCards; }
  /// The list stands on a card. A list that couldn't be read before is read now, and stands on none that was chosen.
  bool HasCard();
  std::int16_t CurrentNum();

  Session& session_;
  frmDK& card_;
  frmVDk& kinds_;
};

}  // namespace zrt
