#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "check/shop_check.h"
#include "core/recordset.h"
#include "stock/document_kind.h"

namespace zrt::check {

namespace {

/// A document as the journal has it, and what its rows add up to.
struct Head {
  std::string dtype;
  std::string date;  ///< as the server writes it; "" for none
  std::string run;   ///< "" for NULL
  std::int64_t summ = 0;
  const DocumentKind* kind = nullptr;  ///< nullptr for an unknown one
  std::int64_t rows = 0;
  std::int64_t rows_summ = 0;

  bool IsPosted() const { return !run.empty(); }
};
using Journal = std::map<std::int64_t, Head>;

/// A row of the register.
struct Row {
  std::int64_t id, doc, doctyp, cod, kol, summ, ostkol, docnext;
  std::string_view date, datenext;  ///< "" for none; held by the set that was read
  bool run, no_stock;
};

enum Field { kId, kDoc, kDocTyp, kCod, kKol, kSumm, kOstKol, kDateDoc, kDocNext, kDateNext, kRun, kRez };

std::int64_t Number(const Cell& cell) {
  return cell.IsNull() ? 0 : cell.Int();
}

Row RowAt(const Recordset& set, int at) {
  const auto number = [&](int field) { return Number(set.At(at, field)); };
  return {number(kId),
          number(kDoc),
          number(kDocTyp),
          number(kCod),
          number(kKol),
          number(kSumm),
          number(kOstKol),
          number(kDocNext),
          set.At(at, kDateDoc).Raw(),
          set.At(at, kDateNext).Raw(),
          number(kRun) != 0,
          number(kRez) != 0};
}

Journal ReadJournal(Connection& connection) {
  Recordset set;
  set.Open("SELECT ID,DTYPE,DATEDOC,RUN,SUMM FROM JOURNAL", connection);
  Journal journal;
  for (int at = 1; at <= set.RecordCount(); ++at) {
    Head& head = journal[set.At(at, 0).Int()];
    head.dtype = set.At(at, 1).TextOrEmpty();
    head.date = set.At(at, 2).Raw();
    head.run = set.At(at, 3).TextOrEmpty();
    head.summ = Number(set.At(at, 4));
    head.kind = FindKind(head.dtype);
  }
  return journal;
}

std::string Named(std::int64_t id, const Head& head) {
  return fmt::format("документ №{} \"{}\" {}", id, head.dtype, head.date.empty() ? "без даты" : head.date);
}

std::string Named(const Row& row) {
  return fmt::format("документ №{}, товар {}, {}", row.doc, row.cod, row.date.empty() ? "без даты" : row.date);
}

class RegisterCheck {
 public:
  RegisterCheck(Connection& connection, Findings& findings)
      : connection_(connection), findings_(findings), journal_(ReadJournal(connection)) {}

  void Run() {
    Recordset set;
    set.Open(
        "SELECT ID,DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,DATEDOC,DOCNEXT,DATENEXT,RUN,REZ FROM REGISTR "
        "ORDER BY COD,DATEDOC,ID",
        connection_);
    std::vector<Row> product;
    for (int at = 1; at <= set.RecordCount(); ++at) {
      const Row row = RowAt(set, at);
      if (!product.empty() && product.back().cod != row.cod) EndProduct(product);
      product.push_back(row);
      CheckRow(row);
    }
    if (!product.empty()) EndProduct(product);
    for (const auto& [id, head] : journal_) CheckHead(id, head);
    CheckOwnLines();
    CheckTills();
  }

 private:
  void CheckRow(const Row& row) {
    if (row.date.empty()) findings_.Add(Fault::kNoDate, Named(row));
    if (row.no_stock && row.run) findings_.Add(Fault::kNoStockPosted, Named(row));
    const auto found = journal_.find(row.doc);
    if (found == journal_.end()) return findings_.Add(Fault::kRowsWithoutHead, Named(row));
    Head& head = found->second;
    ++head.rows;
    head.rows_summ += row.summ;
    if (head.kind != nullptr) CheckKind(row, *head.kind);
    if (row.date != head.date) findings_.Add(Fault::kOtherDate, Named(row));
    if (head.IsPosted() && !row.run && !row.no_stock) findings_.Add(Fault::kPostedHalf, Named(row));
    if (!head.IsPosted() && row.run) findings_.Add(Fault::kPostedRowsOfUnposted, Named(row));
    if (!row.run && !row.no_stock && row.ostkol != 0) findings_.Add(Fault::kBalanceWithoutPosting, Named(row));
  }

  void CheckKind(const Row& row, const DocumentKind& kind) {
    if (row.doctyp != NumberOf(kind.type) || kind.movement == Movement::kNone) {
      findings_.Add(Fault::kOtherKind, Named(row));
    } else if (kind.sign * row.kol < 0) {
      findings_.Add(Fault::kWrongSign, Named(row));
    }
  }

  /// All rows of one product, in the order of their dates.
  void EndProduct(std::vector<Row>& rows) {
    CheckBalances(rows);
    std::unordered_set<std::int64_t> documents;
    for (const Row& row : rows) documents.insert(row.doc);
    for (const Row& row : rows) CheckLink(row, documents);
    const auto newest = std::find_if(rows.rbegin(), rows.rend(), [](const Row& row) { return row.run; });
    if (newest != rows.rend()) {
      // Of several rows of one moment the server may return any as the newest.
      for (auto row = newest; row != rows.rend() && row->date == newest->date; ++row) {
        if (row->run) newest_[row->cod].push_back(row->ostkol);
      }
    }
    rows.clear();
  }

  void CheckBalances(const std::vector<Row>& rows) {
    std::int64_t balance = 0;
    std::int64_t missed_before = 0;
    Moves moves;
    for (std::size_t first = 0; first < rows.size();) {
      std::size_t end = first;
      std::map<std::int64_t, std::int64_t> at_once;  // what each document of this moment moves
      for (; end < rows.size() && rows[end].date == rows[first].date; ++end) {
        const Row& row = rows[end];
        if (row.run) balance += row.kol;
        at_once[row.doc] += row.run ? row.kol : -row.kol;
      }
      for (const auto& [doc, move] : at_once) ++moves[move];
      std::int64_t missed = missed_before;
      for (; first < end; ++first) {
        const Row& row = rows[first];
        if (!row.run) continue;
        missed = balance - row.ostkol;
        if (missed == 0) continue;
        const std::int64_t own = at_once[row.doc];
        const bool stale = missed == missed_before || IsMoveOfOther(missed, own, moves) ||
                           IsMoveOfOther(missed - missed_before, own, moves);
        findings_.Add(
            stale ? Fault::kStaleBalance : Fault::kWrongBalance,
            Named(row) + fmt::format(": записано {:.3f}, по движениям {:.3f}", static_cast<double>(row.ostkol) / 1000,
                                     static_cast<double>(balance) / 1000));
      }
      missed_before = missed;
    }
  }

  /// How many documents of a product move this quantity; an unposted one counts with the opposite sign, for it may have
  /// been posted.
  using Moves = std::unordered_map<std::int64_t, int>;

  /// A balance that was right until an earlier document came or went, and nobody wanted the later ones posted again,
  /// misses exactly what that document moves. `own` is what the row's own document moves.
  static bool IsMoveOfOther(std::int64_t missed, std::int64_t own, const Moves& moves) {
    const auto found = moves.find(missed);
    return found != moves.end() && found->second > (missed == own ? 1 : 0);
  }

  /// Links that were never written or have been overtaken by a document between are usual; what a link says must be
  /// true.
  void CheckLink(const Row& row, const std::unordered_set<std::int64_t>& documents) {
    if (row.docnext == 0) return;
    const auto next = journal_.find(row.docnext);
    if (next == journal_.end()) return findings_.Add(Fault::kLinkToDeleted, Named(row));
    if (!documents.contains(row.docnext) || row.docnext == row.doc || row.datenext != next->second.date ||
        row.datenext < row.date) {
      findings_.Add(Fault::kWrongLink, Named(row) + fmt::format(": следующий документ №{}", row.docnext));
    }
  }

  void CheckHead(std::int64_t id, const Head& head) {
    if (head.date.empty()) findings_.Add(Fault::kNoDate, Named(id, head));
    if (head.kind == nullptr) return findings_.Add(Fault::kUnknownKind, Named(id, head));
    if (head.IsPosted() && head.run != "OK") findings_.Add(Fault::kUnknownState, Named(id, head));
    if (head.kind->movement == Movement::kNone) return;
    if (head.IsPosted() && head.rows == 0) findings_.Add(Fault::kPostedWithoutRows, Named(id, head));
    if (head.kind->sign == 0) return;
    const std::int64_t rows = head.rows_summ * head.kind->sign;
    if (head.summ == rows) return;
    // Lines without a quantity, or with one below zero, count in the head and don't go into the register.
    const bool returns = head.kind->type == DocType::kDailyReport && head.summ < rows;
    findings_.Add(
        returns ? Fault::kReturnsInHead : Fault::kHeadSum,
        Named(id, head) + fmt::format(": в документе {:.2f}, в строках {:.2f}", static_cast<double>(head.summ) / 1000,
                                      static_cast<double>(rows) / 1000));
  }

  /// Lines that live beside the register.
  void CheckOwnLines() {
    Recordset open;
    open.Open(
        "SELECT 'подбор',TYP FROM DOCUMENT UNION SELECT 'инвентаризация',DOC FROM DOCINVENT WHERE DOC=-1 UNION "
        "SELECT 'переоценка',DOC FROM DOCPRICE WHERE DOC=-1",
        connection_);
    for (int at = 1; at <= open.RecordCount(); ++at) {
      findings_.Add(Fault::kOpenDocument,
                    open.At(at, 1).Int() < 0
                        ? open.At(at, 0).Text()
                        : std::string(kDocumentKinds.at(static_cast<std::size_t>(open.At(at, 1).Int())).dtype));
    }
    Recordset lines;
    lines.Open(
        "SELECT DOC,ROUND(SUM((KOL-OST)*PRCR/1000)),'ИНВЕНТАРИЗАЦИЯ' FROM DOCINVENT WHERE DOC<>-1 GROUP BY DOC "
        "UNION ALL SELECT DOC,0,'Переоценка' FROM DOCPRICE WHERE DOC<>-1 GROUP BY DOC",
        connection_);
    for (int at = 1; at <= lines.RecordCount(); ++at)
      CheckOwnSum(lines.At(at, 0).Int(), Number(lines.At(at, 1)), lines.At(at, 2).Text());
  }

  void CheckOwnSum(std::int64_t doc, std::int64_t summ, const std::string& dtype) {
    const auto found = journal_.find(doc);
    if (found == journal_.end()) {
      return findings_.Add(Fault::kRowsWithoutHead, fmt::format("документ №{} \"{}\"", doc, dtype));
    }
    const Head& head = found->second;
    if (head.dtype != dtype) return findings_.Add(Fault::kOtherKind, Named(doc, head));
    if (head.summ == summ) return;
    // A count is stored when it is typed, the head when the document is saved.
    findings_.Add(head.IsPosted() ? Fault::kHeadSum : Fault::kCountsNotSaved, Named(doc, head));
  }

  void CheckTills() {
    Recordset products;
    products.Open("SELECT COD,OST FROM TOVAR WHERE COD1=1 AND N6 IS NULL", connection_);
    for (int at = 1; at <= products.RecordCount(); ++at) {
      const auto newest = newest_.find(products.At(at, 0).Int());
      if (newest == newest_.end()) continue;
      const std::int64_t ost = Number(products.At(at, 1));
      if (std::find(newest->second.begin(), newest->second.end(), ost) != newest->second.end()) continue;
      findings_.Add(Fault::kOldBalanceAtTills,
                    fmt::format("товар {}: на кассе {:.3f}, в регистре {:.3f}", newest->first,
                                static_cast<double>(ost) / 1000, static_cast<double>(newest->second.front()) / 1000));
    }
  }

  Connection& connection_;
  Findings& findings_;
  Journal journal_;
  std::unordered_map<std::int64_t, std::vector<std::int64_t>> newest_;  ///< balances of each product's last moment
};

}  // namespace

void CheckDocuments(Connection& connection, Findings& findings) {
  RegisterCheck(connection, findings).Run();
}

}  // namespace zrt::check
