#include "core/session.h"

#include <fmt/format.h>

#include <utility>

#include "core/errors.h"

namespace zrt {
namespace {

constexpr int kTimeoutSeconds = 1800;
constexpr int kClientSide = 3;

DatabaseError NoConnection() {
  return {"08003", 0, "no connection to the database"};
}

}  // namespace

std::string MainConnectionString(const DatabaseAddress& address) {
  return fmt::format("driver={{{}}}; server={}; uid={}; pwd=41730926; database={}; charset=latin1", kDatabaseDriver,
                     address.host, address.account, address.schema);
}

Session::Session(DatabaseAddress address, const Clock& clock, RegionalFormat format)
    : address_(std::move(address)), clock_(clock), format_(std::move(format)) {}

void Session::Connect() {
  MainConnection.ConnectionTimeout = kTimeoutSeconds;
  MainConnection.CursorLocation = kClientSide;
  MainConnection.Open(MainConnectionString(address_));
  command_ = std::make_unique<Command>(MainConnection);
  pool_ = std::make_unique<RecordsetPool>();
}

void Session::Disconnect() {
  MainConnection.Close();
  if (std::exchange(ConnReserveOpen, false)) ConnReserve.Close();
  command_.reset();
  pool_.reset();
}

Command& Session::MainCommand() {
  if (!command_) throw NoConnection();
  return *command_;
}

RecordsetPool& Session::Pool() {
  if (!pool_) throw NoConnection();
  return *pool_;
}

void Session::BindSet(Recordset& set, const std::string& sql) {
  set.Close();
  set.Open(sql, MainConnection);
}

void Session::ShowLastRow(Recordset& set) {
  if (set.RecordCount() > 0) set.MoveLast();
}

Recordset Session::ReadOne(std::string sql) {
  Recordset read;
  MainCommand().CommandText = std::move(sql);
  MainCommand().Execute(read);
  return read;
}

void Session::Write(std::string sql) {
  MainCommand().CommandText = std::move(sql);
  MainCommand().Execute();
}

}  // namespace zrt
