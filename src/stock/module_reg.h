#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "core/session.h"
#include "ui/desktop.h"

namespace zrt {

/// The stock register. REGISTR holds a row for every line of every stock document; a document's rows count (RUN=1) once
/// it is posted, and each then carries the product's balance after the document (OSTKOL). Quantities, sums, prices and
/// balances are in thousandths; document numbers and product codes are those of JOURNAL.ID and TOVAR.COD. A date text
/// has the form "yyyy-mm-dd hh:mm:ss".
///
/// No routine opens a transaction: a statement that fails (DatabaseError) ends the routine with all earlier ones in
/// force, and unposting and posting the document again puts it right. A negative balance is nothing special. The
/// routines share three result slots and are not re-entrant.
class ModuleReg {
 public:
  ModuleReg(Session& session, Desktop& desktop) : session_(session), desktop_(desktop) {}

  /// Posts document `doc` (`run`) or takes it out again. `date` is the document's moment. When posted documents of the
  /// same second or later exist, asks whether to post them anew, so that their balances take this one in; on Cancel
  /// they keep the balances they had. Throws DatabaseError.
  void RunDocRegistr(std::int32_t doc, bool run, const std::string& date);

  /// Posts the documents of `later` (ID, DATEDOC) anew, in its order and without a question. Quantities stay; balances
  /// and links are written again. Throws DatabaseError, whose task names the document that it broke off at: that one
  /// may stand as not posted.
  void RerunLaterDocs(Recordset& later);

  /// The same for one document of that moment; nothing for one without rows in the register. Throws DatabaseError.
  void RerunOneDoc(std::int32_t doc, const std::string& date);

  /// Lets the newest posted row of each product of `codes` (field 0) up to `date` point to document `doc`, or clears
  /// what points to it when not `run`. Nothing is computed from these links. Throws DatabaseError.
  void LinkDocChain(std::int32_t doc, bool run, Recordset& codes, const std::string& date);

  /// The balance after the product's newest posted document; 0 without one, and 0 when the query fails.
  std::int32_t GetOstNow(std::int32_t cod);

  /// The balance at that moment, documents of that very second included; 0 without one. Throws DatabaseError.
  std::int32_t GetOstAtDate(std::int32_t cod, const std::string& date);

  /// The price per unit in the newest posted incoming invoice; 0 without one, and for a line without quantity.
  /// Transfers in don't count. Throws DatabaseError.
  std::int32_t GetPurchasePrice(std::int32_t cod);

  /// REGISTR.ID of the product's newest posted row at or before `date`; 0 without one. Throws DatabaseError.
  std::int32_t GetRegistrIdAtDate(std::int32_t cod, const std::string& date);

  /// 1 when the product keeps no stock (TOVAR.N6 isn't NULL), else 0; 0 too for a code that the catalogue lacks. Throws
  /// DatabaseError.
  std::int32_t GetTovarN6(std::int32_t cod);

  /// The number by which a document's head is found again right after its insert: the last nine characters of
  /// ddmmhhmmss by the clock. Two work places that save the same kind and sum in one second are told apart by nothing.
  std::string MakeControlNumber() const;

  /// Told how many rows of how many are done, none of them first.
  using Progress = std::function<void(int done, int of)>;

  /// Copies to the terminals, for every product of `catalogue` (field 0 its code): the balance, and what was sold since
  /// today's start of the shift, which is nothing as long as the clock hasn't reached that hour. `progress` is told
  /// of the rows meanwhile. Requeries `catalogue` at the end; an empty one is left alone. Throws DatabaseError.
  void RecalcOstAfterShift(Recordset& catalogue, const Progress& progress);

  /// Takes a picked product: its code, quantity and price.
  using BroadcastReciever = std::function<void(std::int32_t cod, std::int32_t kol, std::int32_t price)>;

  /// Products picked for `form_code` go to `reciever` from now on.
  void ConnectReciever(std::uint8_t form_code, BroadcastReciever reciever);

  /// Hands a picked product to the form that asked for it; nothing for a code that no form has.
  void BroadcastToForm(std::int32_t cod, std::int32_t kol, std::int32_t price, std::uint8_t form_code);

 private:
  /// Balance and what was sold in the 24 hours from `start`, row by row.
  void CopyToTerminals(const Recordset& catalogue, const std::string& start, const Progress& progress);
  void WriteBalances(std::int32_t doc, Recordset& codes, const std::string& date);
  std::int32_t FirstInt32(const std::string& sql);

  Session& session_;
  Desktop& desktop_;
  // The three slots. RerunOneDoc uses the first again, so it is closed before the second is walked.
  Recordset codes_;
  Recordset later_;
  Recordset value_;
  std::map<std::uint8_t, BroadcastReciever> recievers_;
};

}  // namespace zrt
