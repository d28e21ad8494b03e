#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/errors.h"
#include "core/session.h"

namespace zrt {

/// What the schema routines need from above: a way to tell the operator something and to ask.
class SchemaDialog {
 public:
  virtual ~SchemaDialog() = default;
  virtual void Tell(std::string_view text) = 0;  ///< a plain box
  /// A box with the critical icon, with the failure's details.
  virtual void Warn(std::string_view text, const DatabaseError& failure) = 0;
  /// Buttons Yes and No, the question icon; true for Yes. `usual` is what Enter answers.
  virtual bool AskYesNo(std::string_view text, bool usual) = 0;
};

/// Brings the schema from `version` (CONST row 3, N2) to version 4, one version after another, and raises `version` as
/// it goes. A failing statement shows a message and ends the routine: what ran before it stays in force, and the
/// operator has to mend the database by hand before the next start. Throws no DatabaseError.
void UpgradeDatabase(Session& session, SchemaDialog& dialog, std::uint8_t& version);

/// What new tables of the shop's schema get: anything but latin1 in its binary order makes "Анна" and "Внна" equal in
/// some of them, in others not.
inline constexpr std::string_view kWrongCharacterSet =
    "новые таблицы базы получают не ту кодировку (нужна latin1, latin1_bin); исправляет администратор:";

/// The statement that gives the schema of this connection its character set and order; "" where it has them.
std::string CharacterSetRemedy(Connection& connection);

/// Runs once per database, while the operating mode (CONST row 7, N3) is still NULL: creates the tables of the stock
/// documents if `register_wanted`, and stores the answer as -1 or 0. Throws DatabaseError.
void CreateDocumentTables(Session& session, SchemaDialog& dialog, bool register_wanted);

/// The same statements as texts (UTF-8), for tools that write a whole database as a script: those that bring a database
/// with the terminals' tables alone from version 0 to 4 on a present server, and the document tables' own.
std::vector<std::string> UpgradeStatements();
std::vector<std::string> DocumentTableStatements();

}  // namespace zrt
