#include "stock/document_lines.h"

#include <fmt/format.h>

#include <string_view>
#include <utility>

#include "core/numbers.h"
#include "core/sql_comment.h"

namespace zrt {

namespace {

constexpr std::string_view kTables[] = {"DOCUMENT", "DOCINVENT", "DOCPRICE"};

std::string_view TableOf(const DocumentKind& kind) {
  return kTables[static_cast<std::size_t>(kind.lines)];
}

/// What a product without a name is called when a document is opened again.
std::string_view DeletedProduct(const DocumentKind& kind) {
  return kind.type == DocType::kDailyReport ? "----! УДАЛЕННЫЙ ТОВАР !----" : "-----! УДАЛЕННЫЙ ТОВАР !----";
}

/// The register's rows of a document as lines: code, name, quantity, price, sum and what REZ holds. What takes stock
/// out gets its signs turned back; the retail price is the catalogue's of this moment, not of the invoice's.
std::string ReopenQuery(const DocumentKind& kind, std::int32_t doc) {
  const std::string_view sign = kind.sign < 0 ? "-" : "";
  const std::string_view extra = kind.extra == LineExtra::kRetail ? ",TOVAR.PRISE*10"
                                 : kind.extra == LineExtra::kCard ? ",REGISTR.KARD"
                                                                  : "";
  return fmt::format(
      "SELECT DISTINCT REGISTR.COD As 'Cod',TOVAR.NAME,{0}REGISTR.KOL,ROUND(REGISTR.SUMM/REGISTR.KOL*1000),"
      "{0}REGISTR.SUMM{1} FROM REGISTR LEFT JOIN TOVAR ON REGISTR.COD=TOVAR.COD WHERE TOVAR.COD1=1 AND "
      "REGISTR.DOC={2} ORDER BY Cod",
      sign, extra, doc);
}

std::string Number(const Cell& cell) {
  return cell.IsNull() ? "0" : cell.Text();
}

/// Money that `kol` is worth; what the tables can't hold stays recognisable.
std::int64_t Worth(std::int64_t kol, std::int64_t price) {
  return static_cast<std::int64_t>(static_cast<double>(kol) / scale::kDocument * static_cast<double>(price));
}

}  // namespace

bool FitsTables(std::int64_t thousandths) {
  return std::in_range<std::int32_t>(thousandths);
}

std::int32_t ToThousandths(const Cell& shown, int sign) {
  return sign * DecimalToInt32(shown.Raw(), scale::kDocument);
}

std::string DocumentLines::These() const {
  return fmt::format("{} WHERE {}={}", TableOf(kind_), kind_.lines == LinesIn::kDocument ? "TYP" : "DOC", Key());
}

DocumentLines::Added DocumentLines::Add(std::int32_t cod, std::int32_t kol, std::int32_t price, std::int64_t sum) {
  if (const std::optional<std::string> counted = NameOfCounted(cod)) return {Outcome::kThereAlready, *counted};
  const std::optional<NewLine> line = Prepare(cod, kol, price);
  if (!line) return {Outcome::kNoProduct};
  if (!Fits(*line, sum)) return {Outcome::kTooLarge};
  Write(*line);
  return {Outcome::kAdded};
}

std::optional<std::string> DocumentLines::NameOfCounted(std::int32_t cod) {
  if (kind_.lines != LinesIn::kDocInvent) return std::nullopt;
  const Recordset line =
      session_.ReadOne(fmt::format("SELECT COD,NAME FROM DOCINVENT WHERE DOC={} AND COD={}", doc_, cod));
  if (line.RecordCount() == 0) return std::nullopt;
  return line.Field("NAME").TextOrEmpty();
}

std::optional<NewLine> DocumentLines::Prepare(std::int32_t cod, std::int32_t kol, std::int32_t price) {
  const Recordset product =
      session_.ReadOne(fmt::format("SELECT DISTINCT COD,NAME,PRISE FROM TOVAR WHERE COD={}", cod));
  if (product.RecordCount() == 0) return std::nullopt;
  NewLine line{.cod = cod, .name = product.Field("NAME").TextOrEmpty(), .kol = kol, .price = price};
  const Cell prise = product.Field("PRISE");
  line.retail = prise.IsNull() ? 0 : ToInt32(prise.Number() * scale::kPriceToDocument);
  if (price == 0 && kind_.zero_price == ZeroPrice::kPurchase) line.price = stock_.GetPurchasePrice(cod);
  if (price == 0 && kind_.zero_price == ZeroPrice::kRetail) line.price = line.retail;
  if (kind_.lines == LinesIn::kDocInvent) line.ost = stock_.GetOstNow(cod);
  Appraise(line);
  return line;
}

void DocumentLines::Appraise(NewLine& line) const {
  if (kind_.lines == LinesIn::kDocument) {
    line.cost = static_cast<std::int64_t>(RoundHalfEven(line.price / 1000.0 * line.kol));
  } else if (kind_.lines == LinesIn::kDocInvent) {
    line.cost = Worth(std::int64_t{line.kol} - line.ost, line.retail);
  }
}

bool DocumentLines::Fits(const NewLine& line, std::int64_t sum) const {
  const std::int64_t difference = std::int64_t{line.kol} - line.ost;
  const bool counts =
      kind_.lines != LinesIn::kDocInvent || (FitsTables(difference) && FitsTables(Worth(difference, line.price)));
  return counts && FitsTables(line.cost) && FitsTables(sum + line.cost);
}

bool DocumentLines::HasSoundName(const NewLine& line) {
  return StaysInQuotes(line.name);
}

void DocumentLines::Write(const NewLine& line) {
  const std::string product = fmt::format("{},'{}'", line.cod, line.name);
  switch (kind_.lines) {
    case LinesIn::kDocument: {
      const bool retail = kind_.extra == LineExtra::kRetail;
      return session_.Write(fmt::format(
          "INSERT INTO DOCUMENT (COD,NAME,KOL,PRISE,COST,{}TYP) VALUES ({},{},{},{},{}{})", retail ? "REZ," : "",
          product, line.kol, line.price, line.cost, retail ? fmt::format("{},", line.retail) : "", Key()));
    }
    case LinesIn::kDocInvent:
      return session_.Write(
          fmt::format("INSERT INTO DOCINVENT (COD,NAME,OST,KOL,PRC,PRCR,DOC) VALUES ({},{},{},{},{},{})", product,
                      line.ost, line.kol, line.price, line.retail, doc_));
    case LinesIn::kDocPrice:
      return session_.Write(fmt::format("INSERT INTO DOCPRICE (COD,NAME,PRC1,PRC2,DOC) VALUES ({},{},{},{})", product,
                                        line.retail, line.price, doc_));
  }
}

bool DocumentLines::AddToCount(std::int32_t cod, std::int32_t kol) {
  const std::string counted = fmt::format(" WHERE DOC={} AND COD={}", doc_, cod);
  if (session_.ReadOne("SELECT COD FROM DOCINVENT" + counted).RecordCount() == 0) return false;
  session_.Write(fmt::format("UPDATE DOCINVENT SET KOL=KOL+{}{}", kol, counted));
  return true;
}

void DocumentLines::Delete(std::int64_t id) {
  session_.Write(fmt::format("DELETE FROM {} AND ID={}", These(), id));
}

void DocumentLines::DeleteAll() {
  session_.Write("DELETE FROM " + These());
}

void DocumentLines::DeleteWorkingCopy() {
  session_.Write(kind_.lines == LinesIn::kDocument ? "DELETE FROM " + These()
                                                   : fmt::format("DELETE FROM {} WHERE DOC=-1", TableOf(kind_)));
}

bool DocumentLines::MoveTo(std::int32_t doc) {
  if (kind_.lines == LinesIn::kDocument || doc_ == doc) return false;
  session_.Write(fmt::format("UPDATE {} SET DOC={} WHERE DOC=-1", TableOf(kind_), doc));
  return true;
}

void DocumentLines::TakeFromRegister(std::int32_t doc) {
  DeleteWorkingCopy();
  Recordset saved;
  session_.BindSet(saved, ReopenQuery(kind_, doc));
  const bool extra = kind_.extra != LineExtra::kNone;
  for (int row = 1; row <= saved.RecordCount(); ++row) {
    const auto number = [&](int field) { return Number(saved.At(row, field)); };
    const std::string name = saved.At(row, 1).IsNull() ? std::string(DeletedProduct(kind_)) : saved.At(row, 1).Text();
    session_.Write(fmt::format("INSERT INTO DOCUMENT (COD,NAME,KOL,PRISE,COST,{}TYP) VALUES ({},'{}',{},{},{},{}{})",
                               extra ? "REZ," : "", number(0), name, number(2), number(3), number(4),
                               extra ? number(5) + "," : "", Key()));
  }
}

std::int64_t DocumentLines::Sum() {
  if (kind_.lines == LinesIn::kDocPrice) return 0;
  const std::string_view sum = kind_.lines == LinesIn::kDocument ? "SUM(COST)" : "SUM((KOL-OST)*PRCR/1000)";
  const Recordset read = session_.ReadOne(fmt::format("SELECT {} FROM {}", sum, These()));
  return read.IsNull(0) ? 0 : read.Field(0).Int();
}

}  // namespace zrt
