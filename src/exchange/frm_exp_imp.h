#pragma once

#include <functional>
#include <string>

#include "core/session.h"
#include "platform/drive_map.h"
#include "ui/form.h"

namespace zrt {

/// Connects the program to the reserve server and copies to it: the catalogue, the waiters and the touch panels'
/// layout, each replacing what is there, and the closed sales, which are appended. Keeps the name of the data link file
/// of either server.
///
/// The main connection reads, marks and is the source; the reserve's gets the rows, and is asked for little more than
/// its last sale. Nothing is copied in a transaction: a failure ends the copy at its row, and what has been copied by
/// then stays copied and marked.
class frmExpImp final : public Form {
 public:
  /// `executable`: file name of this program, under which its data link file stands in the settings file.
  frmExpImp(Desktop& desktop, Session& session, const DriveMap& drives, std::string executable);

  Frame Frame1{*this, "Frame1"};
  Label Label1{*this, "Label1"};
  TextBox TxtUDL1{*this, "TxtUDL1"};  ///< data link file of the reserve server
  Button CmdConn1{*this, "CmdConn1"};
  Label LblConn1{*this, "LblConn1"};
  Frame Frame2{*this, "Frame2"};  ///< what can be copied; usable when the reserve server is connected
  Frame Frame3{*this, "Frame3"};
  Button CmdTov{*this, "CmdTov"};
  Button CmdOfc{*this, "CmdOfc"};
  Button CmdKeys{*this, "CmdKeys"};
  Frame Frame4{*this, "Frame4"};
  Button CmdExp{*this, "CmdExp"};
  Label Label3{*this, "Label3"};
  Label LblEnd{*this, "LblEnd"};  ///< the moment of the last sale on the reserve server
  Label Label2{*this, "Label2"};
  zrt::ProgressBar ProgressBar{*this, "ProgressBar"};
  Frame Frame5{*this, "Frame5"};
  Label Label4{*this, "Label4"};
  TextBox TxtUDL{*this, "TxtUDL"};  ///< data link file of the main server
  Button CmdConn{*this, "CmdConn"};
  Button CmdClrRez{*this, "CmdClrRez"};

  /// Ends the program by closing its main window.
  std::function<void()> CloseProgram;

 private:
  struct CopiedTable;

  void Form_Load();
  void CmdConn1_Click();
  void CmdConn_Click();
  void CmdClrRez_Click();

  /// Opens the reserve server by its data link file and makes that base a reserve copy. In silence when it fails.
  void Connect1();
  /// Keeps the reserve's data link file in CONST. Throws DatabaseError.
  void SaveUDL1();
  /// The three lists, each replaced whole. Throw DatabaseError, TypeMismatch at a NULL; what was there is gone then.
  void ExportTov();
  void ExportOfc();
  void ExportKeys();
  /// Appends what closed orders hold and bears no mark, and marks it on both sides. Throws DatabaseError, TypeMismatch
  /// at a NULL; rows copied by then keep their marks.
  void ExportProd();

  void ReplaceList(const CopiedTable& table);
  /// `rows_before`: how far the bar has come with the table before. `before_row` is called before each row.
  void CopySales(const CopiedTable& table, const Recordset& rows, int rows_before, const std::string& mark,
                 const std::function<void()>& before_row);
  void OpenRows(const CopiedTable& table, Recordset& rows);
  /// `value` gives what each column gets, as it stands in the statement.
  void InsertThere(const CopiedTable& table, const std::function<std::string(std::size_t)>& value);
  void ShowLastCopied();
  void WriteReserve(std::string sql);

  Session& session_;
  const DriveMap& drives_;
  std::string executable_;
};

}  // namespace zrt
