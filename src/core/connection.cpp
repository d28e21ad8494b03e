#include "core/connection.h"

#include <array>

#include "core/odbc.h"
#include "core/sql_comment.h"
#include "core/text.h"

namespace zrt {
namespace {

/// The program's statements come from servers that cut an over-long text and let a grouped query name any column. This
/// mode makes them mean the same on the servers of today.
constexpr std::string_view kSessionMode = "SET SESSION sql_mode='NO_ENGINE_SUBSTITUTION'";

SQLCHAR* Bytes(std::string_view text) {
  // The ODBC calls take pointers to non-constant bytes that they don't write to.
  return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.data()));
}

}  // namespace

OdbcHandle::OdbcHandle(SQLSMALLINT type, SQLHANDLE parent) : type_(type) {
  if (!SQL_SUCCEEDED(SQLAllocHandle(type, parent, &handle_))) {
    throw DatabaseError("HY001", 0, "the driver manager gives no handle");
  }
}

void OdbcHandle::Free() {
  if (handle_ != nullptr) SQLFreeHandle(type_, std::exchange(handle_, nullptr));
}

DatabaseError Diagnosis(const OdbcHandle& handle) {
  std::array<char, 6> state{};
  std::array<char, 1024> text{};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  // Field by field: the driver manager turns a whole record into wide characters first, as UTF-8, and then has none for
  // a message that quotes a name in windows-1251.
  const auto field = [&](SQLSMALLINT which, void* into, std::size_t size) {
    return SQL_SUCCEEDED(
        SQLGetDiagField(handle.Type(), handle.Get(), 1, which, into, static_cast<SQLSMALLINT>(size), &length));
  };
  if (!field(SQL_DIAG_SQLSTATE, state.data(), state.size())) return {"HY000", 0, "no diagnosis"};
  field(SQL_DIAG_NATIVE, &native, 0);
  field(SQL_DIAG_MESSAGE_TEXT, text.data(), text.size());
  return {state.data(), native, FromWindows1251(text.data())};
}

void Connection::Impl::OpenLink() {
  CloseLink();
  if (environment.Get() == nullptr) {
    environment = OdbcHandle(SQL_HANDLE_ENV, nullptr);
    SQLSetEnvAttr(environment.Get(), SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  }
  OdbcHandle fresh(SQL_HANDLE_DBC, environment.Get());
  const auto seconds = reinterpret_cast<SQLPOINTER>(static_cast<SQLULEN>(timeout));
  SQLSetConnectAttr(fresh.Get(), SQL_ATTR_LOGIN_TIMEOUT, seconds, SQL_IS_UINTEGER);
  SQLSetConnectAttr(fresh.Get(), SQL_ATTR_CONNECTION_TIMEOUT, seconds, SQL_IS_UINTEGER);
  SQLRETURN result = SQL_ERROR;
  WaitFor([&] {
    result =
        SQLDriverConnect(fresh.Get(), nullptr, Bytes(connection_string),
                         static_cast<SQLSMALLINT>(connection_string.size()), nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  });
  if (!SQL_SUCCEEDED(result)) throw Diagnosis(fresh);
  link = std::move(fresh);
  try {
    Send(kSessionMode);
  } catch (const DatabaseError&) {
    CloseLink();
    throw;
  }
  lost = false;
  ++links;
}

void Connection::Impl::WaitFor(const std::function<void()>& call) {
  if (wait == nullptr) return call();
  wait->Make(call);
}

void Connection::Impl::CloseLink() noexcept {
  if (link.Get() != nullptr) SQLDisconnect(link.Get());
  link.Free();
}

OdbcHandle Connection::Impl::Send(std::string_view bytes) {
  OdbcHandle statement = NewStatement();
  // A result is read once from its first to its last row; whatever moves in it later moves in our own copy.
  SQLSetStmtAttr(statement.Get(), SQL_ATTR_CURSOR_TYPE, reinterpret_cast<SQLPOINTER>(SQL_CURSOR_FORWARD_ONLY), 0);
  SQLRETURN result = SQL_ERROR;
  WaitFor([&] { result = SQLExecDirect(statement.Get(), Bytes(bytes), static_cast<SQLINTEGER>(bytes.size())); });
  // SQL_NO_DATA: an UPDATE or DELETE that found no row
  if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) throw Failure(statement);
  return statement;
}

OdbcHandle Connection::Impl::Run(std::string_view sql) {
  running = sql;
  try {
    return Begin(sql);
  } catch (const DatabaseError& error) {
    throw error.During(running);
  }
}

OdbcHandle Connection::Impl::Begin(std::string_view sql) {
  if (!open) throw DatabaseError("08003", 0, "the connection isn't open");
  const std::string bytes = ToWindows1251(sql);
  // No statement of the program holds a comment. One that does has it from a text whose quote or back-slash ended the
  // text early, and the comment would hide the WHERE behind it.
  if (HoldsComment(bytes)) throw DatabaseError("42000", 0, "a comment sign outside the quotes of the statement");
  if (lost && std::exchange(may_reopen, false)) OpenLink();
  if (lost) throw DatabaseError("08S01", 0, "the connection is lost");

  const auto verdict = faults == nullptr ? FaultSource::Verdict::kRun : faults->BeforeStatement(sql);
  if (verdict == FaultSource::Verdict::kFail) throw DatabaseError("HY000", 1105, "failed by the fault source");
  if (verdict == FaultSource::Verdict::kLoseAnswer) Send(bytes);
  if (verdict == FaultSource::Verdict::kCut || verdict == FaultSource::Verdict::kLoseAnswer) {
    OdbcHandle statement(SQL_HANDLE_STMT, link.Get());
    SQLExecDirect(statement.Get(), Bytes("KILL CONNECTION_ID()"), SQL_NTS);
  }
  return Send(bytes);
}

OdbcHandle Connection::Impl::NewStatement() {
  try {
    return {SQL_HANDLE_STMT, link.Get()};
  } catch (const DatabaseError&) {
    // Over some transports a cut link first shows here.
    lost = true;
    throw;
  }
}

bool Connection::Impl::Answers() {
  SQLRETURN result = SQL_ERROR;
  try {
    const OdbcHandle statement(SQL_HANDLE_STMT, link.Get());
    WaitFor([&] { result = SQLExecDirect(statement.Get(), Bytes("SELECT 1"), SQL_NTS); });
  } catch (const DatabaseError&) {
    return false;
  }
  return SQL_SUCCEEDED(result) || result == SQL_NO_DATA;
}

DatabaseError Connection::Impl::Failure(const OdbcHandle& statement) {
  const DatabaseError error = Diagnosis(statement);
  // Drivers have many states and numbers for a link that is gone; the server's silence is the same for all.
  if (!Answers()) lost = true;
  return error.During(running);
}

Connection::Connection() : impl_(std::make_unique<Impl>()) {}

Connection::~Connection() {
  Close();
}

void Connection::Open(const std::string& connection_string) {
  Close();
  impl_->connection_string = ToWindows1251(connection_string);
  impl_->timeout = ConnectionTimeout;
  impl_->running.clear();
  impl_->OpenLink();
  impl_->open = true;
}

void Connection::Close() noexcept {
  impl_->CloseLink();
  impl_->open = impl_->lost = impl_->may_reopen = false;
}

bool Connection::IsOpen() const {
  return impl_->open;
}

bool Connection::IsLost() const {
  return impl_->lost;
}

int Connection::Link() const {
  return impl_->links;
}

void Connection::AllowReopen() {
  impl_->may_reopen = impl_->lost;
}

std::int64_t Connection::Execute(std::string_view sql) {
  const OdbcHandle statement = impl_->Run(sql);
  SQLLEN rows = -1;
  return SQL_SUCCEEDED(SQLRowCount(statement.Get(), &rows)) ? rows : -1;
}

std::string Connection::ServerVersion() const {
  std::array<char, 64> version{};
  if (impl_->link.Get() == nullptr) return {};
  SQLGetInfo(impl_->link.Get(), SQL_DBMS_VER, version.data(), static_cast<SQLSMALLINT>(version.size()), nullptr);
  return version.data();
}

bool Connection::KnowsSource(const std::string& name) {
  const OdbcHandle environment(SQL_HANDLE_ENV, nullptr);
  SQLSetEnvAttr(environment.Get(), SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  std::array<SQLCHAR, 256> source{};
  std::array<SQLCHAR, 256> driver{};
  SQLSMALLINT length = 0;
  for (SQLUSMALLINT direction = SQL_FETCH_FIRST; SQL_SUCCEEDED(SQLDataSources(
           environment.Get(), direction, source.data(), source.size(), &length, driver.data(), driver.size(), &length));
       direction = SQL_FETCH_NEXT) {
    if (ToLower(FromWindows1251(reinterpret_cast<const char*>(source.data()))) == ToLower(name)) return true;
  }
  return false;
}

void Connection::SetServerWait(ServerWait* wait) {
  impl_->wait = wait;
}

void Connection::SetFaultSource(FaultSource* faults) {
  impl_->faults = faults;
}

}  // namespace zrt
