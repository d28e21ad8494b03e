#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/dates.h"
#include "core/recordset.h"
#include "core/session.h"
#include "stock/document_kind.h"
#include "stock/module_reg.h"

namespace zrt {

/// A document's row of the journal, as far as a save writes it.
struct DocumentHead {
  std::int32_t id = -1;  ///< -1 for a new document
  std::string date;      ///< "yyyy-mm-dd hh:mm:ss"; at midnight the time is missing
  std::int64_t sum = 0;  ///< thousandths
  std::string klient;    ///< written by the kinds that have one
  std::string prim;
};

/// What a head that was just written has become in the journal.
struct WrittenHead {
  std::int32_t id = -1;
  DateTime date;
};

/// Saves, posts and unposts documents of one kind: head, register rows and what posting does, without a window.
///
/// Each is a row of statements without a transaction. Whatever fails between them, saving and posting again writes
/// head, rows and balances anew; nothing about a failure is remembered but the head that was written and whose number
/// never came. Texts go into the statements as they are: an apostrophe fails the save. All members throw DatabaseError.
class DocumentBook {
 public:
  DocumentBook(const DocumentKind& kind, Session& session, ModuleReg& stock)
      : kind_(kind), session_(session), stock_(stock) {}

  /// Writes the head of a new document and finds it again by its control number; nothing when it isn't found. One that
  /// was written before and whose number never came gives way: a head isn't there twice.
  std::optional<WrittenHead> InsertHead(const DocumentHead& head);

  /// Writes the head of a saved document, which counts as not posted from here on: a posting may have broken off.
  /// Prices that were posted stay so.
  void UpdateHead(const DocumentHead& head);

  /// Writes the document's register rows anew from the `lines` of its grid; those without a quantity, and differences
  /// of an inventory up to half a unit, have none. Throws OverflowError.
  void WriteRegister(const DocumentHead& head, const Recordset& lines);

  /// Posts a saved document: into the register (whose question about later documents may come), or the new prices of
  /// `lines` into the catalogue.
  void Post(const DocumentHead& head, const Recordset& lines);

  /// Takes document `id` out of the register; `date` is the moment under which it stands there.
  void Unpost(std::int32_t id, const std::string& date);

  /// Copies the balances of the lines' products to the terminals.
  void CopyBalances(const Recordset& lines);

  /// The document that was being saved is left: of its head nothing is remembered.
  void Forget() { head_in_doubt_.clear(); }

 private:
  void PostPrices(const Recordset& lines);

  const DocumentKind& kind_;
  Session& session_;
  ModuleReg& stock_;
  std::string head_in_doubt_;  ///< condition of a head that may have been written and whose number never came
};

}  // namespace zrt
