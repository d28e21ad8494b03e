#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace zrt {

/// For tests only: stands beneath the connection and may fail a statement or cut the link before it is sent.
class FaultSource {
 public:
  enum class Verdict { kRun, kFail, kCut, kLoseAnswer };

  virtual ~FaultSource() = default;
  /// Called before each statement that the program sends. kFail makes it fail as a server would refuse it; kCut breaks
  /// the link first, so that the statement and all later ones fail as with a dead server. kLoseAnswer lets the server
  /// run the statement and breaks the link then.
  virtual Verdict BeforeStatement(std::string_view sql) = 0;
};

/// Makes the calls that wait for the server. A host may make them elsewhere while it keeps its windows alive; to the
/// program's logic each is still one call that returns when the server has answered.
class ServerWait {
 public:
  virtual ~ServerWait() = default;
  /// Runs `call`, which throws nothing and touches the driver alone, and returns when it has ended.
  virtual void Make(const std::function<void()>& call) = 0;
};

/// The one connection to the shop's database, which the terminals write to at the same time. Thin over unixODBC: no
/// transactions, no parameters, one statement per call. Text goes out as windows-1251 bytes and comes back from them;
/// Connection, Recordset and Snapshot alone convert what goes to and comes from the server.
///
/// A link that breaks is noticed by the statement that fails on it; that statement is reported and not repeated. After
/// AllowReopen() - called by the host at the beginning of each user action - the next statement opens the connection
/// again first, once.
class Connection {
 public:
  Connection();
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Seconds; to be set before Open. The driver accepts and ignores it, the value is part of the connection's contract.
  int ConnectionTimeout = 15;
  /// 3 = snapshots are held by the client; the only location this class implements.
  int CursorLocation = 3;

  /// Opens with a whole ODBC connection string (UTF-8) and sets the session's lenient SQL mode, so that every statement
  /// means the same on all servers. Throws DatabaseError.
  void Open(const std::string& connection_string);

  /// Closes; harmless when closed. An open Recordset keeps its rows.
  void Close() noexcept;

  /// True between a successful Open and Close, also while the link is broken.
  bool IsOpen() const;

  /// True after a statement found the link of an open connection dead, and until it has been opened again.
  bool IsLost() const;

  /// How often a link has been opened. What was read over an earlier one may have been changed by a statement whose
  /// answer was lost with it.
  int Link() const;

  /// The next statement may open a lost connection again. See the class comment.
  void AllowReopen();

  /// Runs one statement (UTF-8) and drops its result, if any. Returns the number of affected rows, -1 if unknown.
  /// Throws DatabaseError; also when the connection isn't open. A statement that holds a comment outside its quotes is
  /// refused before it is sent, here and by every Recordset: a text of the operator's has broken out of its quotes.
  std::int64_t Execute(std::string_view sql);

  /// The server's version as "10.11.6", asked without a statement. Empty when not open.
  std::string ServerVersion() const;

  /// Does the machine's ODBC configuration hold a data source of that name (UTF-8, case ignored)?
  static bool KnowsSource(const std::string& name);

  /// Tests hang their fault source in here; nullptr takes it out. Not owned.
  void SetFaultSource(FaultSource* faults);

  /// Who makes the calls that wait for the server; nullptr makes them in place. Not owned.
  void SetServerWait(ServerWait* wait);

  struct Impl;  ///< the driver's side; only core itself sees into it

 private:
  friend class Recordset;
  std::unique_ptr<Impl> impl_;
};

}  // namespace zrt
