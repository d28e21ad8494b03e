#include "stock/document_book.h"

#include <fmt/format.h>

#include "core/errors.h"
#include "core/numbers.h"
#include "stock/document_lines.h"

namespace zrt {

namespace {

/// Calls `visit(row, cod)` for each line, but for one with the code of the line before it.
template <class Visit>
void ForEachProduct(const Recordset& lines, Visit visit) {
  std::int32_t remembered = -1;
  for (int row = 1; row <= lines.RecordCount(); ++row) {
    const std::int32_t cod = ToInt32(lines.At(row, lines.FieldIndex("Cod")).Number());
    if (cod != remembered) visit(row, cod);
    remembered = cod;
  }
}

}  // namespace

std::optional<WrittenHead> DocumentBook::InsertHead(const DocumentHead& head) {
  if (!head_in_doubt_.empty()) session_.Write("DELETE FROM JOURNAL WHERE " + head_in_doubt_);
  const std::string control = stock_.MakeControlNumber();
  // The sum of a price change is always 0 and tells nothing.
  head_in_doubt_ = fmt::format("DTYPE='{}' AND CNTRL={}", kind_.dtype, control);
  if (kind_.lines != LinesIn::kDocPrice) head_in_doubt_ += fmt::format(" AND SUMM={}", head.sum);
  try {
    session_.Write(fmt::format(
        "INSERT INTO JOURNAL (DTYPE,DATEDOC,SUMM,KLIENT,PRIM,CNTRL,RUN,REZ) VALUES ('{}','{}',{},'{}','{}',{},NULL,0)",
        kind_.dtype, head.date, head.sum, head.klient, head.prim, control));
  } catch (const DatabaseError&) {
    // Refused, by a quote in a text: there is no head of ours, but another document may bear the same control number.
    if (!session_.MainConnection.IsLost()) head_in_doubt_.clear();
    throw;
  }
  const Recordset written = session_.ReadOne("SELECT ID, DATEDOC FROM JOURNAL WHERE " + head_in_doubt_);
  if (written.RecordCount() == 0) return std::nullopt;
  head_in_doubt_.clear();
  return WrittenHead{ToInt32(written.Field("ID").Number()), written.Field("DATEDOC").Moment()};
}

void DocumentBook::UpdateHead(const DocumentHead& head) {
  std::string values;
  if (kind_.lines != LinesIn::kDocPrice) values += fmt::format(",SUMM={}", head.sum);
  if (kind_.has_klient) values += fmt::format(",KLIENT='{}'", head.klient);
  if (!kind_.has_own_text) values += fmt::format(",PRIM='{}',DATEDOC='{}'", head.prim, head.date);
  session_.Write(fmt::format("UPDATE JOURNAL SET {} WHERE ID={}", values.substr(1), head.id));
  if (kind_.movement != Movement::kNone) {
    session_.Write(fmt::format("UPDATE JOURNAL SET RUN=NULL WHERE ID={}", head.id));
  }
}

void DocumentBook::WriteRegister(const DocumentHead& head, const Recordset& lines) {
  if (kind_.movement == Movement::kNone) return;
  session_.Write(fmt::format("DELETE FROM REGISTR WHERE DOC={}", head.id));
  if (lines.RecordCount() == 0) return;
  const bool counts = kind_.lines == LinesIn::kDocInvent;
  const int kol = lines.FieldIndex(counts ? "Differ" : "Value");
  const int summ = lines.FieldIndex(counts ? "DiffPurshase" : "Summ");
  const int sign = counts ? 1 : kind_.sign;
  for (int row = 1; row <= lines.RecordCount(); ++row) {
    const Cell quantity = lines.At(row, kol);
    // A difference of half a unit and less is shown and counted in the sums, and enters no row.
    if (counts ? ToInt32(quantity.Number()) == 0 : !(quantity.Number() > 0)) continue;
    const std::int32_t cod = ToInt32(lines.At(row, 0).Number());
    const Cell card = lines.At(row, kind_.extra == LineExtra::kCard ? lines.FieldIndex("Card") : 0);
    const std::string kard = kind_.extra == LineExtra::kCard && !card.IsNull() ? card.Text() : "0";
    const std::int32_t rez = kind_.knows_no_stock ? stock_.GetTovarN6(cod) : 0;
    session_.Write(
        fmt::format("INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,KARD,DATEDOC,DOCNEXT,DATENEXT,RUN,REZ) VALUES "
                    "({},{},{},{},{},0,{},'{}',NULL,NULL,0,{})",
                    head.id, NumberOf(kind_.type), cod, ToThousandths(quantity, sign),
                    ToThousandths(lines.At(row, summ), sign), kard, head.date, rez));
  }
}

void DocumentBook::Post(const DocumentHead& head, const Recordset& lines) {
  if (kind_.lines != LinesIn::kDocPrice) return stock_.RunDocRegistr(head.id, true, head.date);
  PostPrices(lines);
  session_.Write(fmt::format("UPDATE JOURNAL SET RUN='OK' WHERE ID={}", head.id));
}

void DocumentBook::PostPrices(const Recordset& lines) {
  ForEachProduct(lines, [&](int row, std::int32_t cod) {
    const Cell price = lines.At(row, lines.FieldIndex("NewPrice"));
    session_.Write(
        fmt::format("UPDATE TOVAR SET PRISE={} WHERE COD={}", DecimalToInt32(price.Raw(), scale::kTovarPrise), cod));
  });
}

void DocumentBook::Unpost(std::int32_t id, const std::string& date) {
  stock_.RunDocRegistr(id, false, date);
}

void DocumentBook::CopyBalances(const Recordset& lines) {
  ForEachProduct(lines, [this](int, std::int32_t cod) {
    const std::int32_t ost = stock_.GetOstNow(cod);
    session_.Write(fmt::format("UPDATE TOVAR SET OST={} WHERE COD={}{}", ost, cod,
                               kind_.no_stock_keeps_ost ? " AND N6 IS NULL" : ""));
  });
}

}  // namespace zrt
