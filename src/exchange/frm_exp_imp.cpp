#include "exchange/frm_exp_imp.h"

#include <fmt/format.h>

#include <array>
#include <span>
#include <string_view>
#include <utility>

#include "core/errors.h"
#include "core/text.h"
#include "platform/data_link.h"
#include "platform/settings_file.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

/// How a column's value goes into the reserve's INSERT.
enum class Copied {
  kBare,
  kQuoted,
  kDay,     ///< a moment of which the day is copied
  kMoment,  ///< through its text on the screen, as kDay
  kMark,    ///< the mark of the day of the export, in place of the row's number: the reserve numbers its rows itself
};

struct CopiedColumn {
  std::string_view name;
  Copied how = Copied::kBare;
};

}  // namespace

/// A table of which the reserve server gets rows. The columns are read and written in this order.
struct frmExpImp::CopiedTable {
  std::string_view name;
  std::span<const CopiedColumn> columns;
  std::string_view rows;  ///< which rows, behind the table's name
  std::string_view done;  ///< what the operator is told at the end
};

namespace {

constexpr int kTimeoutSeconds = 1800;
constexpr int kClientSide = 3;
constexpr Colour kSuccess = 0x008000;

/// CONST.N5 holds as many characters of a path.
constexpr std::size_t kPathLength = 50;

constexpr std::array kProducts = std::to_array<CopiedColumn>({{"ID"},
                                                              {"COD"},
                                                              {"COD1"},
                                                              {"NAME", Copied::kQuoted},
                                                              {"OST"},
                                                              {"KOL"},
                                                              {"PRISE"},
                                                              {"BARCODE", Copied::kQuoted},
                                                              {"NDS"},
                                                              {"REZ"},
                                                              {"N1"},
                                                              {"N2"},
                                                              {"N4"},
                                                              {"T1", Copied::kQuoted},
                                                              {"N5"},
                                                              {"N7"},
                                                              {"UKT", Copied::kQuoted}});

constexpr std::array kWaiters = std::to_array<CopiedColumn>(
    {{"COD"}, {"NAME", Copied::kQuoted}, {"TOTAL"}, {"SUM1"}, {"DATETIME", Copied::kQuoted}, {"NUM"}});

constexpr std::array kKeys = std::to_array<CopiedColumn>({{"ID"}, {"CODE"}, {"REZ"}, {"LV"}});

// UKT isn't quoted here, unlike in the catalogue's copy: an empty one breaks the statement.
constexpr std::array kSoldLines = std::to_array<CopiedColumn>({{"COD"},
                                                               {"NAME", Copied::kQuoted},
                                                               {"KOL"},
                                                               {"PRISE"},
                                                               {"SKID"},
                                                               {"SUM2"},
                                                               {"TER"},
                                                               {"PERS"},
                                                               {"DATETIME", Copied::kMoment},
                                                               {"REZ"},
                                                               {"NUM"},
                                                               {"N1"},
                                                               {"N2"},
                                                               {"N3"},
                                                               {"N4"},
                                                               {"T1", Copied::kQuoted},
                                                               {"N5"},
                                                               {"ID", Copied::kMark},
                                                               {"N6"},
                                                               {"UKT"}});

constexpr std::array kReceipts = std::to_array<CopiedColumn>({{"OPER", Copied::kQuoted},
                                                              {"SUM1", Copied::kQuoted},
                                                              {"SKID", Copied::kQuoted},
                                                              {"SUM2", Copied::kQuoted},
                                                              {"PLUS", Copied::kQuoted},
                                                              {"MINUS", Copied::kQuoted},
                                                              {"TER"},
                                                              {"PERS"},
                                                              {"DAT", Copied::kDay},
                                                              {"TIM", Copied::kMoment},
                                                              {"NUM"},
                                                              {"N1"},
                                                              {"N2"},
                                                              {"N3"},
                                                              {"N4"},
                                                              {"T1", Copied::kQuoted},
                                                              {"N5"},
                                                              {"ID", Copied::kMark},
                                                              {"N6"}});

/// The column of the reserve, and of this database, that holds the mark.
constexpr std::string_view kMarkColumn = "N7";

std::string Read(const CopiedColumn& column) {
  return std::string(column.name);
}

std::string Written(const CopiedColumn& column) {
  return std::string(column.how == Copied::kMark ? kMarkColumn : column.name);
}

std::string Quoted(const std::string& value) {
  return "'" + value + "'";
}

/// `text_of(i)` for each column, separated by commas.
template <class Text>
std::string Listed(std::size_t columns, const Text& text_of) {
  std::string list;
  for (std::size_t i = 0; i < columns; ++i) list += (i == 0 ? "" : ",") + text_of(i);
  return list;
}

/// A value as it stands in the statement. Throws TypeMismatch for NULL and for what is no moment where one is due.
std::string Value(const Cell& cell, Copied how, const std::string& mark, const RegionalFormat& format) {
  switch (how) {
    case Copied::kBare:
      return cell.Text();
    case Copied::kQuoted:
      return Quoted(cell.Text());
    case Copied::kDay:
      return Quoted(CutSqlDate(format.DateTimeText(cell.Moment())));
    case Copied::kMoment:
      return Quoted(CutSqlDateTime(format.DateTimeText(cell.Moment())));
    case Copied::kMark:
      break;
  }
  return mark;
}

/// Is the value a moment? A receipt or a line without its moment can't go over; any other value that was never filled
/// in goes over as it is.
bool IsMoment(Copied how) {
  return how == Copied::kDay || how == Copied::kMoment;
}

/// The base behind a connection as its server names it, whatever address it was reached by. Servers that don't tell
/// capitals in names of schemas apart may give the name as it was asked for. The nodes of a cluster are one base.
std::string BaseBehind(Connection& connection) {
  Recordset base;
  base.Open(
      "SELECT CONCAT_WS(' ',@@hostname,@@port,@@datadir),IF(@@lower_case_table_names=0,DATABASE(),LOWER(DATABASE()))",
      connection);
  Recordset cluster;
  cluster.Open("SHOW STATUS LIKE 'wsrep_cluster_state_uuid'", connection);
  const bool is_node = !cluster.Eof() && !cluster.Field(1).TextOrEmpty().empty();
  return (is_node ? cluster.Field(1) : base.Field(0)).Text() + " " + base.Field(1).TextOrEmpty();
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
  const Recordset path = session_.ReadOne("SELECT N5 FROM CONST WHERE COD=6");
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
    if (BaseBehind(reserve) == BaseBehind(session_.MainConnection)) {
      reserve.Close();
      TheDesktop().MsgBox(
          "Этот файл доступа к данным ведёт в базу основного сервера!\nРезервная копия должна лежать в другой базе.",
          BoxIcon::kCritical);
      return;
    }
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
  ReplaceList(
      {.name = "TOVAR", .columns = kProducts, .rows = "", .done = "Экспорт справочника товаров успешно завершен!"});
}

void frmExpImp::ExportOfc() {
  ReplaceList(
      {.name = "KLIENT", .columns = kWaiters, .rows = "", .done = "Экспорт списка официантов успешно завершен!"});
}

void frmExpImp::ExportKeys() {
  ReplaceList({.name = "HOTKEYS",
               .columns = kKeys,
               .rows = " WHERE LV IS NOT NULL",
               .done = "Экспорт сенсорной клавиатуры успешно завершен!"});
}

void frmExpImp::ReplaceList(const CopiedTable& table) {
  Recordset list;
  OpenRows(table, list);
  if (list.RecordCount() == 0) return;
  ProgressBar.Max = list.RecordCount();
  WriteReserve(fmt::format("DELETE FROM {}", table.name));
  for (; !list.Eof(); list.MoveNext()) {
    InsertThere(table, [&](std::size_t column) {
      return Value(list.Field(static_cast<int>(column)), table.columns[column].how, {}, session_.Format());
    });
    ProgressBar.Value = list.Bookmark();
  }
  ProgressBar.Value = 0;
  TheDesktop().MsgBox(std::string(table.done), BoxIcon::kExclamation);
}

void frmExpImp::ExportProd() {
  static constexpr CopiedTable kLines = {.name = "PROD",
                                         .columns = kSoldLines,
                                         .rows = " WHERE N4>2 AND N7 IS NULL AND DATETIME IS NOT NULL",
                                         .done = "Экспорт таблицы продаж успешно завершен!"};
  static constexpr CopiedTable kOperations = {
      .name = "KASSA", .columns = kReceipts, .rows = " WHERE N4>2 AND N7 IS NULL", .done = kLines.done};
  ProgressBar.Max = 1;
  ProgressBar.Value = 1;
  Recordset lines;
  OpenRows(kLines, lines);
  Recordset receipts;
  OpenRows(kOperations, receipts);
  ProgressBar.Value = 0;
  // The lines alone decide: receipts without any wait for the next time.
  if (lines.RecordCount() == 0) {
    TheDesktop().MsgBox("а выгружать-то нечего...", BoxIcon::kExclamation);
    return;
  }
  ProgressBar.Max = lines.RecordCount() + receipts.RecordCount();
  const std::string today = session_.Format().DateText(session_.TheClock().Now().date);
  const std::string mark = Mid(today, 1, 2) + Mid(today, 4, 2) + Mid(today, 9, 2);
  try {
    // What is marked stays copied, and the lines that are left bring their receipts along the next time.
    StopOffer stop(TheDesktop());
    CopySales(kLines, lines, 0, mark, [&] { stop.Step(); });
  } catch (const Stopped&) {
    ShowLastCopied();
    ProgressBar.Value = 0;
    return;
  }
  CopySales(kOperations, receipts, lines.RecordCount(), mark, [] {});
  ShowLastCopied();
  ProgressBar.Value = 0;
  TheDesktop().MsgBox(std::string(kLines.done), BoxIcon::kExclamation);
}

// Two statements a row, on either side and in no transaction: when the second one fails the row is copied once more by
// the next export. The reserve gives its rows numbers of its own.

void frmExpImp::CopySales(const CopiedTable& table, const Recordset& rows, int rows_before, const std::string& mark,
                          const std::function<void()>& before_row) {
  const int id = rows.FieldIndex("ID");
  for (int row = 1; row <= rows.RecordCount(); ++row) {
    before_row();
    InsertThere(table, [&](std::size_t column) {
      const Cell cell = rows.At(row, static_cast<int>(column));
      const Copied how = table.columns[column].how;
      if (!cell.IsNull()) return Value(cell, how, mark, session_.Format());
      if (!IsMoment(how)) return std::string("NULL");
      throw TypeMismatch(fmt::format("{}, ID {}: не заполнено поле {}", table.name, rows.At(row, id).Text(),
                                     table.columns[column].name));
    });
    session_.Write(
        fmt::format("UPDATE {} SET {}={} WHERE ID={}", table.name, kMarkColumn, mark, rows.At(row, id).Text()));
    ProgressBar.Value = rows_before + row;
  }
}

void frmExpImp::OpenRows(const CopiedTable& table, Recordset& rows) {
  const auto name = [&](std::size_t column) { return Read(table.columns[column]); };
  session_.BindSet(rows,
                   fmt::format("SELECT {} FROM {}{}", Listed(table.columns.size(), name), table.name, table.rows));
}

void frmExpImp::InsertThere(const CopiedTable& table, const std::function<std::string(std::size_t)>& value) {
  const auto name = [&](std::size_t column) { return Written(table.columns[column]); };
  const std::size_t columns = table.columns.size();
  WriteReserve(
      fmt::format("INSERT INTO {} ({}) VALUES ({})", table.name, Listed(columns, name), Listed(columns, value)));
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
