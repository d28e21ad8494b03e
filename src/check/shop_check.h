#pragma once

#include "check/findings.h"
#include "core/connection.h"

namespace zrt::check {

/// Looks through the shop behind an open connection and says what does not fit together. Only reads, in one snapshot of
/// the server's, so that terminals and work places may go on meanwhile. Throws DatabaseError.
Findings CheckShop(Connection& connection);

/// The stock documents and their register; part of CheckShop. Throws DatabaseError.
void CheckDocuments(Connection& connection, Findings& findings);

}  // namespace zrt::check
