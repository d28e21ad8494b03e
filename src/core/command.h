#pragma once

#include <cstdint>
#include <string>

#include "core/connection.h"
#include "core/recordset.h"

namespace zrt {

/// The shared command object: a statement's text and two ways to run it.
class Command {
 public:
  explicit Command(Connection& connection) : connection_(connection) {}

  std::string CommandText;  ///< UTF-8

  /// Write: runs CommandText, nothing is read back. Returns the number of affected rows. Throws DatabaseError.
  std::int64_t Execute() { return connection_.Execute(CommandText); }

  /// One-off read: closes `into` if it is open and fills it with the result of CommandText. Throws DatabaseError.
  void Execute(Recordset& into) {
    into.Close();
    into.Open(CommandText, connection_);
  }

 private:
  Connection& connection_;
};

}  // namespace zrt
