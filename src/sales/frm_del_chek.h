#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "core/session.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// Annuls lines of a receipt that is still open on a terminal and leaves a trace of them among the deletions. It works
/// on the terminal's own table CHECK<n>; what is sold isn't touched, since an open receipt hasn't got there yet.
class frmDelChek final : public Form {
 public:
  frmDelChek(Desktop& desktop, Session& session);

  Frame Frame1{*this, "Frame1"};
  std::array<Button, 12> CmdKas{ControlArray<Button, 12>(*this, "CmdKas", 1)};  ///< terminals 1 to 12
  DataGrid DataGrid1{*this, "DataGrid1"};
  Timer Timer1{*this, "Timer1", 20000, false};  ///< how long a receipt stays in view

  std::int16_t KassaNo = 0;  ///< the terminal chosen
  Recordset RsCheck;         ///< its open receipt, of the moment of the query

  /// Shows the receipt of KassaNo. Throws DatabaseError; the grid is empty then, so that no line of another terminal's
  /// receipt can be annulled.
  void RequeryCheck();

  /// Logs one annulled line of KassaNo among the deletions, under the present moment, without an order or a person.
  /// `kol` and `prise` are texts as the grid shows them. Throws DatabaseError, also for a quote in the name.
  void RecordSpionStroka(std::int32_t cod, const std::string& name, const std::string& kol, const std::string& prise);

  /// Removes every line of the product from the receipt of KassaNo and shows it again. Throws DatabaseError.
  void DeleteCheckRow(std::int32_t cod);

 private:
  void CmdKas_Click(std::int16_t index);
  void DataGrid1_KeyDown(Key& key);
  void Timer1_Timer();

  void AnnulRow();
  void RezetDG1();
  void UncolourButtons();

  Session& session_;
};

}  // namespace zrt
