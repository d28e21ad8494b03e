#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "core/clock.h"
#include "core/command.h"
#include "core/connection.h"
#include "core/dates.h"
#include "core/recordset.h"
#include "core/regional_format.h"
#include "core/shift.h"

namespace zrt {

/// Where the shop's database is; fixed when the program is built.
struct DatabaseAddress {
  std::string host;
  std::string account;
  std::string schema;
};

/// Asked for before anything is cleared wholesale.
inline constexpr std::string_view kAdministratorPassword = "357218";

/// The driver's name in the machine's ODBC configuration, for both servers.
inline constexpr std::string_view kDatabaseDriver = "MySQL ODBC 8.0 ANSI Driver";

/// The connection string of the main database: these fields, in this order.
std::string MainConnectionString(const DatabaseAddress& address);

/// The recordsets made once and kept for the whole run: those of the main window's grids and lists, each with one fixed
/// role, which other screens read too. What one window alone shows is a member of that window.
struct RecordsetPool {
  Recordset RsProducts;     ///< TOVAR list: DataGrid1 of both indexes
  Recordset RsPanels;       ///< HOTKEYS, the level shown: DataGrid12
  Recordset RsDeletions;    ///< SPION: DataGrid11
  Recordset RsOrderDetail;  ///< KASSA with PROD, order detail: DataGrid2
  Recordset RsSales;        ///< PROD: DataGrid3
  Recordset RsOrders;       ///< KASSA with PROD, orders: DataGrid4
  Recordset RsKassaLite;    ///< KASSA alone: DataGrid7
  Recordset RsTotals;       ///< one-row totals for labels
  Recordset RsCards;        ///< DISCOUNT: DataGrid5
  Recordset RsCardKinds;    ///< TOTALSKID
  Recordset RsWaiters;      ///< KLIENT: DataGrid9
  Recordset RsJournal;      ///< JOURNAL: DataGrid6
};

/// The process-wide state and the three ways to the database:
///  1. bound set:    BindSet(set, sql)            (then the grid's format routine, then ShowLastRow(set))
///  2. one-off read: ReadOne(sql)                 (fields by position)
///  3. write:        Write(sql)
/// One thread does all the work; no routine is re-entered during a statement, so MainCommand can be shared.
class Session {
 public:
  /// `clock` and `format` come from the platform; `address` from the build. The clock must outlive the session.
  Session(DatabaseAddress address, const Clock& clock, RegionalFormat format);

  /// Opens MainConnection (timeout 1800 s, client-side snapshots). Throws DatabaseError; MainCommand and the pool exist
  /// only after a success.
  void Connect();

  /// Closes the connection, then that of the reserve server if it is open, then releases the command and every
  /// recordset of the pool. Harmless when repeated.
  void Disconnect();

  bool IsConnected() const { return pool_ != nullptr; }

  Connection MainConnection;
  Connection ConnReserve;           ///< the reserve server's; opened by the operator
  Command CmdReserve{ConnReserve};  ///< its command
  bool ConnReserveOpen = false;     ///< the reserve server has been connected

  /// Throw DatabaseError when there is no connection: a step that needs the database fails then.
  Command& MainCommand();
  RecordsetPool& Pool();

  /// Closes `set` if it is open and opens it with `sql`. Throws DatabaseError.
  void BindSet(Recordset& set, const std::string& sql);
  /// Moves to the last row if there are rows: grids open on their newest row.
  static void ShowLastRow(Recordset& set);

  /// Runs `sql` through MainCommand and returns what it read, on its first row if it has one. Throws DatabaseError.
  Recordset ReadOne(std::string sql);
  /// Runs `sql` through MainCommand. Throws DatabaseError.
  void Write(std::string sql);

  const Clock& TheClock() const { return clock_; }
  const RegionalFormat& Format() const { return format_; }

  // Process-wide state, shared by the screens under these names.
  std::uint8_t DbVersion = 0;    ///< CONST row 3, N2, as raised by UpgradeDatabase
  std::uint8_t CurrentMenu = 0;  ///< touch menu shown: 1 or 2; 0 when the schema has a single menu
  bool FullEditMode = false;     ///< reference data may be edited
  bool RegisterEnabled = false;  ///< stock register and documents exist
  bool LiteMode = false;         ///< cash operations only
  bool PeriodAll = false;        ///< the whole stored period instead of one shift
  Shift ShiftPeriod;             ///< ShiftFrom, ShiftTo, ShiftTimeText
  Date StartDay;                 ///< the day on which the program was started
  Date StoredDate;               ///< the day picked last in a calendar, the start's day before that
  bool IsReserveCopy = false;    ///< this database holds the reserve copy (CONST row 6, N6 isn't NULL)
  std::string UdlPath;           ///< data link file of this installation, from the settings file
  std::string ReportFolder = "C:\\Korvina\\Report\\";

 private:
  DatabaseAddress address_;
  const Clock& clock_;
  RegionalFormat format_;
  std::unique_ptr<Command> command_;
  std::unique_ptr<RecordsetPool> pool_;
};

}  // namespace zrt
