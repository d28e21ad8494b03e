#include "exchange/frm_exp_imp.h"

#include <fmt/args.h>
#include <fmt/format.h>

#include <utility>

#include "core/errors.h"
#include "core/text.h"
#include "platform/data_link.h"
#include "platform/settings_file.h"
#include "ui/desktop.h"

namespace zrt {

/// A list that the reserve server gets whole.
struct frmExpImp::ListCopy {
  const char* read;
  const char* clear;
  const char* insert;  ///< a place for each column of `read`, in its order
  const char* done;
};

/// A table of sales, whose new rows are appended there and marked on both sides.
struct frmExpImp::SalesCopy {
  const char* read;    ///< up to N5, then ID, then what may be NULL
  const char* insert;  ///< a place for each column up to N5, one for the mark, then for those behind ID
  const char* mark;
  int day;  ///< the field of which the day is copied, kNone without one
  int moment;
  bool n5_may_be_null;
};

namespace {

constexpr int kTimeoutSeconds = 1800;
constexpr int kClientSide = 3;
constexpr Colour kSuccess = 0x008000;

/// CONST.N5 holds as many characters of a path.
constexpr std::size_t kPathLength = 50;

constexpr int kNone = -1;

// What the two tables of sales have in common, by the field's place in `read`.
constexpr int kN5 = 16, kId = 17;

/// A moment goes through its text on the screen; throws TypeMismatch for NULL.
std::string ScreenText(const Cell& cell, const RegionalFormat& format) {
  return format.DateTimeText(cell.Moment());
}

}  // namespace

frmExpImp::frmExpImp(Desktop& desktop, Session& session, const DriveMap& drives, std::string executable)
    : Form(desktop, "frmExpImp"), session_(session), drives_(drives), executable_(std::move(executable)) {
  Load = [this] { Form_Load(); };
  KeyDown = [this](Key& key) {
    if (key.code == Key::kEscape) Hide();
  };
  CmdConn1.Click = [this] { CmdConn1_Click(); };
  CmdTov.Click = [this] { ExportTov(); };
  CmdOfc.Click = [this] { ExportOfc(); };
  CmdKeys.Click = [this] { ExportKeys(); };
  CmdExp.Click = [this] { ExportProd(); };
  CmdConn.Click = [this] { CmdConn_Click(); };
  CmdClrRez.Click = [this] { CmdClrRez_Click(); };
  Complete();
}

void frmExpImp::Form_Load() {
  // What is a reserve copy itself has no reserve of its own.
  CmdConn1.Enabled = !session_.IsReserveCopy;
  CmdClrRez.Visible = session_.IsReserveCopy;
  TxtUDL.Text = session_.UdlPath;
  const Recordset& path = session_.ReadOne("SELECT N5 FROM CONST WHERE COD=6");
  if (!path.Eof() && !path.IsNull(0)) TxtUDL1.Text = path.Field(0).Text();
}

void frmExpImp::CmdConn1_Click() {
  if (TxtUDL1.Text().empty()) {
    TheDesktop().MsgBox("Как же так?..., это же основной сервер!!!", BoxIcon::kCritical);
    return;
  }
  if (!drives_.HasFile(TxtUDL1.Text())) {
    TheDesktop().MsgBox("Не могу найти файл доступа к данным!", BoxIcon::kCritical);
    return;
  }
  Connect1();
  SaveUDL1();
}

void frmExpImp::Connect1() {
  Connection& reserve = session_.ConnReserve;
  // A window that was closed and opened again knows nothing of the connection before.
  if (std::exchange(session_.ConnReserveOpen, false)) reserve.Close();
  reserve.ConnectionTimeout = kTimeoutSeconds;
  reserve.CursorLocation = kClientSide;
  try {
    reserve.Open(
        DataLinkConnection(drives_, "File name=" + TxtUDL1.Text() + ";", kDatabaseDriver, &Connection::KnowsSource));
    session_.ConnReserveOpen = true;
    WriteReserve("UPDATE CONST SET N6='резервный' WHERE COD=6");
    LblConn1.Visible = true;
    LblConn1.Caption = "Подключено";
    LblConn1.ForeColor = kSuccess;
    CmdConn1.Enabled = false;
    Frame2.Enabled = true;
    ShowLastCopied();
  } catch (const Error&) {
    // The word that doesn't appear is the whole answer: the reserve is switched off for most of the day.
  }
}

void frmExpImp::SaveUDL1() {
  std::string path = TxtUDL1.Text();
  if (path == "0") path.clear();
  if (!path.empty()) {
    // Only the first back-slash is protected from the statement, by two more behind it; a path without any gets two at
    // its head. What the server stores is what the statement's escapes leave.
    const std::string head = Left(path, kPathLength);
    const std::size_t slash = head.find('\\');
    const std::size_t position = slash == std::string::npos ? 0 : Length(head.substr(0, slash)) + 1;
    path = Left(path, position) + "\\\\" + Mid(path, position + 1, kPathLength);
  }
  session_.Write(fmt::format("UPDATE CONST SET N5='{}' WHERE COD=6", Left(path, kPathLength)));
}

void frmExpImp::CmdConn_Click() {
  SaveDataLinkPath(drives_, executable_, TxtUDL.Text());
  CloseProgram();
}

void frmExpImp::CmdClrRez_Click() {
  const std::string password =
      TheDesktop().AskPassword("Для отмены статуса РЕЗЕРВНЫЙ для текущего сервера введите пароль администратора:");
  if (password != kAdministratorPassword) return;
  const BoxAnswer answer =
      TheDesktop().MsgBox("Подтвердите отмену статуса РЕЗЕРВНЫЙ для текущего сервера!\nпрограмма будет закрыта",
                          BoxIcon::kQuestion, BoxButtons::kOkCancel);
  if (answer != BoxAnswer::kOk) return;
  TheDesktop().MsgBox("Программа будет закрыта!");
  session_.Write("UPDATE CONST SET N6=NULL WHERE COD=6");
  Close();
  CloseProgram();
}

void frmExpImp::ExportTov() {
  ReplaceList({
      "SELECT ID,COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,T1,N5,N7,UKT FROM TOVAR",
      "DELETE FROM TOVAR",
      "INSERT INTO TOVAR (ID,COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N4,T1,N5,N7,UKT) VALUES "
      "({},{},{},'{}',{},{},{},'{}',{},{},{},{},{},'{}',{},{},'{}')",
      "Экспорт справочника товаров успешно завершен!",
  });
}

void frmExpImp::ExportOfc() {
  ReplaceList({
      "SELECT COD,NAME,TOTAL,SUM1,DATETIME,NUM FROM KLIENT",
      "DELETE FROM KLIENT",
      "INSERT INTO KLIENT (COD,NAME,TOTAL,SUM1,DATETIME,NUM) VALUES ({},'{}',{},{},'{}',{})",
      "Экспорт списка официантов успешно завершен!",
  });
}

void frmExpImp::ExportKeys() {
  ReplaceList({
      "SELECT ID,CODE,REZ,LV FROM HOTKEYS WHERE LV IS NOT NULL",
      "DELETE FROM HOTKEYS",
      "INSERT INTO HOTKEYS (ID,CODE,REZ,LV) VALUES ({},{},{},{})",
      "Экспорт сенсорной клавиатуры успешно завершен!",
  });
}

void frmExpImp::ReplaceList(const ListCopy& copy) {
  Recordset list;
  session_.BindSet(list, copy.read);
  if (list.RecordCount() == 0) return;
  ProgressBar.Max = list.RecordCount();
  WriteReserve(copy.clear);
  for (; !list.Eof(); list.MoveNext()) {
    fmt::dynamic_format_arg_store<fmt::format_context> values;
    for (int field = 0; field < list.FieldCount(); ++field) values.push_back(list.Field(field).Text());
    WriteReserve(fmt::vformat(copy.insert, values));
    ProgressBar.Value = list.Bookmark();
  }
  ProgressBar.Value = 0;
  TheDesktop().MsgBox(copy.done, BoxIcon::kExclamation);
}

void frmExpImp::ExportProd() {
  // UKT isn't quoted here, unlike in the catalogue's copy: an empty one breaks the statement.
  static constexpr SalesCopy kSoldLines = {
      .read =
          "SELECT COD,NAME,KOL,PRISE,SKID,SUM2,TER,PERS,DATETIME,REZ,NUM,N1,N2,N3,N4,T1,N5,ID,N6,UKT FROM PROD WHERE "
          "N4>2 AND N7 IS NULL AND DATETIME IS NOT NULL",
      .insert =
          "INSERT INTO PROD (COD,NAME,KOL,PRISE,SKID,SUM2,TER,PERS,DATETIME,REZ,NUM,N1,N2,N3,N4,T1,N5,N7,N6,UKT) "
          "VALUES ({},'{}',{},{},{},{},{},{},'{}',{},{},{},{},{},{},'{}',{},{},{},{})",
      .mark = "UPDATE PROD SET N7={} WHERE ID={}",
      .day = kNone,
      .moment = 8,
      .n5_may_be_null = false,
  };
  static constexpr SalesCopy kReceipts = {
      .read =
          "SELECT OPER,SUM1,SKID,SUM2,PLUS,MINUS,TER,PERS,DAT,TIM,NUM,N1,N2,N3,N4,T1,N5,ID,N6 FROM KASSA WHERE N4>2 "
          "AND N7 IS NULL",
      .insert =
          "INSERT INTO KASSA (OPER,SUM1,SKID,SUM2,PLUS,MINUS,TER,PERS,DAT,TIM,NUM,N1,N2,N3,N4,T1,N5,N7,N6) VALUES "
          "('{}','{}','{}','{}','{}','{}',{},{},'{}','{}',{},{},{},{},{},'{}',{},{},{})",
      .mark = "UPDATE KASSA SET N7={} WHERE ID={}",
      .day = 8,
      .moment = 9,
      .n5_may_be_null = true,
  };
  ProgressBar.Max = 1;
  ProgressBar.Value = 1;
  Recordset lines;
  session_.BindSet(lines, kSoldLines.read);
  Recordset receipts;
  session_.BindSet(receipts, kReceipts.read);
  ProgressBar.Value = 0;
  // The lines alone decide: receipts without any wait for the next time.
  if (lines.RecordCount() == 0) {
    TheDesktop().MsgBox("а выгружать-то нечего...", BoxIcon::kExclamation);
    return;
  }
  ProgressBar.Max = lines.RecordCount() + receipts.RecordCount();
  const std::string today = session_.Format().DateText(session_.TheClock().Now().date);
  const std::string mark = Mid(today, 1, 2) + Mid(today, 4, 2) + Mid(today, 9, 2);
  CopySales(kSoldLines, lines, 0, mark);
  CopySales(kReceipts, receipts, lines.RecordCount(), mark);
  ShowLastCopied();
  ProgressBar.Value = 0;
  TheDesktop().MsgBox("Экспорт таблицы продаж успешно завершен!", BoxIcon::kExclamation);
}

// Two statements a row, on either side and in no transaction: when the second one fails the row is copied once more by
// the next export. The reserve gives its rows numbers of its own.

void frmExpImp::CopySales(const SalesCopy& copy, const Recordset& rows, int rows_before, const std::string& mark) {
  for (int row = 1; row <= rows.RecordCount(); ++row) {
    fmt::dynamic_format_arg_store<fmt::format_context> values;
    for (int field = 0; field < rows.FieldCount(); ++field) {
      const Cell cell = rows.At(row, field);
      if (field == copy.day) {
        values.push_back(CutSqlDate(ScreenText(cell, session_.Format())));
      } else if (field == copy.moment) {
        values.push_back(CutSqlDateTime(ScreenText(cell, session_.Format())));
      } else if (field == kId) {
        values.push_back(mark);
      } else {
        const bool may_be_null = field > kId || (field == kN5 && copy.n5_may_be_null);
        values.push_back(may_be_null && cell.IsNull() ? "NULL" : cell.Text());
      }
    }
    WriteReserve(fmt::vformat(copy.insert, values));
    session_.Write(fmt::format(fmt::runtime(copy.mark), mark, rows.At(row, kId).Text()));
    ProgressBar.Value = rows_before + row;
  }
}

void frmExpImp::ShowLastCopied() {
  Recordset last;
  last.Open("SELECT MAX(DATETIME) FROM PROD", session_.ConnReserve);
  if (!last.IsNull(0)) LblEnd.Caption = last.Field(0).Display(session_.Format());
}

void frmExpImp::WriteReserve(std::string sql) {
  session_.CmdReserve.CommandText = std::move(sql);
  session_.CmdReserve.Execute();
}

}  // namespace zrt
