#pragma once

#include <string>
#include <vector>

#include "core/session.h"

namespace zrt::test {

/// How far the shop's database has come when a test begins.
enum class Stage {
  kVersion0,    ///< as the terminals bring it, before the program first ran
  kFirstRun,    ///< version 4, the question about the stock register still open
  kPlain,       ///< version 4, without the stock register
  kRegister,    ///< version 4, with the stock register and the tables of the documents
  kLite,        ///< version 4, cash operations only
  kRestricted,  ///< version 4, reference data can't be edited
};

/// A fresh schema of its own name on the tests' private server, dropped when the object goes. It is reached over a
/// connection of its own, as a terminal or another work place would.
///
/// The first schema of a version above 0 in a process costs a whole upgrade, every other one a quick copy.
class TestDatabase {
 public:
  /// Throws DatabaseError when the private server isn't there.
  explicit TestDatabase(Stage stage = Stage::kRegister);
  ~TestDatabase();
  TestDatabase(const TestDatabase&) = delete;
  TestDatabase& operator=(const TestDatabase&) = delete;

  const DatabaseAddress& Address() const { return address_; }

  /// Runs one statement (UTF-8). Throws DatabaseError.
  void Sql(const std::string& statement);

  /// The rows of a result, cell by cell as the server sends them (UTF-8), NULL as "NULL". Throws DatabaseError.
  std::vector<std::vector<std::string>> Rows(const std::string& statement);

  /// The only cell of a result, as in Rows. Throws DatabaseError; Error when the result is of another size.
  std::string Value(const std::string& statement);

  /// The first column of a result, as in Rows.
  std::vector<std::string> Column(const std::string& statement);

 private:
  DatabaseAddress address_;
  Connection connection_;
};

/// A derived table of the numbers 1 to `count`, at most a million, in the column seq: what a server lacks that has no
/// tables of sequences.
std::string Numbers(int count);

/// Address of `schema` on the tests' private server.
DatabaseAddress TestAddress(const std::string& schema);

/// Runs the statements of a file such as data/base_schema.sql over `connection`. A statement ends with ";" at the end
/// of its line; "--" begins a comment. Throws DatabaseError, FileError.
void RunSqlFile(const std::string& path, Connection& connection);

}  // namespace zrt::test
