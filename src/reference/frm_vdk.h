#pragma once

#include <string>

#include "core/session.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// The kinds of discount cards. A rule, one row of TOTALSKID, gives cards of its kind a percentage on the products of
/// one discount category once more than its threshold has been accumulated on the card; the terminals apply them.
///
/// At rest the list is walked; during an entry the fields are open and "Записать" ends it. An entry that changes a rule
/// has taken it out of the table already: leaving the form then loses it.
class frmVDk final : public Form {
 public:
  frmVDk(Desktop& desktop, Session& session);

  DataGrid DataGrid05{*this, "DataGrid05"};
  Label LabelCod{*this, "LabelCod"};  ///< number of the rule
  TextBox Text1{*this, "Text1"};      ///< kind of card, above 100
  ComboBox Combo1{*this, "Combo1"};   ///< discount category of the product
  TextBox Text2{*this, "Text2"};      ///< percentage
  TextBox Text3{*this, "Text3"};      ///< threshold, kopecks
  Button CmdNew{*this, "CmdNew"};
  Button CmdEdit{*this, "CmdEdit"};
  Button CmdOk{*this, "CmdOk"};
  Button CmdDel{*this, "CmdDel"};

  /// Reads all rules into RsCardKinds, which stands on the last one then. Throws DatabaseError.
  void OpenCardKinds();

 private:
  void Form_Activate();
  void CmdNew_Click();
  void CmdEdit_Click();
  void CmdOk_Click();
  void CmdDel_Click();

  Recordset& Rules() { return session_.Pool().RsCardKinds; }
  void ShowRules();
  void PutDefaults();
  void OpenFields(bool open);
  void BeginEntry();
  void Tell(const std::string& message);
  void Select(TextBox& box);

  Session& session_;
};

}  // namespace zrt
