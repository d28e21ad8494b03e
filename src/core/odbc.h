#pragma once

#include <sql.h>
#include <sqlext.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "core/connection.h"
#include "core/errors.h"

// What Connection and Recordset share of unixODBC; nobody else includes this.

namespace zrt {

/// An ODBC handle that is freed with its owner.
class OdbcHandle {
 public:
  OdbcHandle() = default;
  /// Throws DatabaseError when the driver manager refuses.
  OdbcHandle(SQLSMALLINT type, SQLHANDLE parent);
  ~OdbcHandle() { Free(); }
  OdbcHandle(OdbcHandle&& other) noexcept : type_(other.type_), handle_(std::exchange(other.handle_, nullptr)) {}
  OdbcHandle& operator=(OdbcHandle&& other) noexcept {
    std::swap(type_, other.type_);
    std::swap(handle_, other.handle_);
    return *this;
  }

  void Free();
  SQLHANDLE Get() const { return handle_; }
  SQLSMALLINT Type() const { return type_; }

 private:
  SQLSMALLINT type_ = 0;
  SQLHANDLE handle_ = nullptr;
};

/// The first diagnostic record of a handle as an exception to throw.
DatabaseError Diagnosis(const OdbcHandle& handle);

struct Connection::Impl {
  std::string connection_string;  ///< windows-1251 bytes
  OdbcHandle environment;
  OdbcHandle link;  ///< empty while closed, and after a failed attempt to open a lost connection again
  bool open = false;
  bool lost = false;
  bool may_reopen = false;
  int links = 0;
  FaultSource* faults = nullptr;
  ServerWait* wait = nullptr;
  int timeout = 0;      ///< seconds
  std::string running;  ///< the statement (UTF-8) that the errors name

  /// Runs a statement (UTF-8), after opening a lost connection again if that is allowed. The statement handle returned
  /// holds the result. A statement that holds a comment isn't sent. Throws DatabaseError, which names the statement.
  OdbcHandle Run(std::string_view sql);

  /// The failure of a call on `statement`, as an exception to throw; a link on which the server answers
  /// nothing any more counts as lost from now on.
  DatabaseError Failure(const OdbcHandle& statement);

  /// Makes a call to the driver that waits for the server.
  void WaitFor(const std::function<void()>& call);

  void OpenLink();
  void CloseLink() noexcept;
  OdbcHandle Begin(std::string_view sql);
  OdbcHandle NewStatement();
  bool Answers();  ///< is there a server at the other end of the link?
  OdbcHandle Send(std::string_view bytes);
};

}  // namespace zrt
